#include "shared/ResourceIds.h"

const wchar_t* IDF_FORM = L"IDF_FORM";
const wchar_t* IDF_FORM_SETUP = L"IDF_FORM_SETUP";
const wchar_t* IDP_POPUP_COLOR = L"IDP_POPUP_COLOR";
const wchar_t* IDP_POPUP_HELP = L"IDP_POPUP_HELP";

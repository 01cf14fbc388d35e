#pragma once

// Every layout, control and text of the package is named by a constant whose value is its own name.

// The four layout names are exported and writable so that a loader can substitute its own.
#define BREVANT_EXPORTED __attribute__((visibility("default")))

extern BREVANT_EXPORTED const wchar_t* IDF_FORM;
extern BREVANT_EXPORTED const wchar_t* IDF_FORM_SETUP;
extern BREVANT_EXPORTED const wchar_t* IDP_POPUP_COLOR;
extern BREVANT_EXPORTED const wchar_t* IDP_POPUP_HELP;

// Controls of the play form.
inline constexpr const wchar_t* IDC_BUTTON_MENU = L"IDC_BUTTON_MENU";
inline constexpr const wchar_t* IDC_BUTTON_HELP = L"IDC_BUTTON_HELP";
inline constexpr const wchar_t* IDC_BUTTON_SETUP = L"IDC_BUTTON_SETUP";
inline constexpr const wchar_t* IDC_LABEL_ICON_VOLUME = L"IDC_LABEL_ICON_VOLUME";
inline constexpr const wchar_t* IDC_LABEL_VOLUME = L"IDC_LABEL_VOLUME";
inline constexpr const wchar_t* IDC_LABEL_ICON_BLOW = L"IDC_LABEL_ICON_BLOW";
inline constexpr const wchar_t* IDC_PANEL_HOLE = L"IDC_PANEL_HOLE";

// Controls of the setup form and the popups.
inline constexpr const wchar_t* IDC_LABEL_TITLE = L"IDC_LABEL_TITLE";
inline constexpr const wchar_t* IDC_BUTTON_CLOSE = L"IDC_BUTTON_CLOSE";
inline constexpr const wchar_t* IDC_BUTTON_BACK_COLOR = L"IDC_BUTTON_BACK_COLOR";
inline constexpr const wchar_t* IDC_BUTTON_HOLE_COLOR = L"IDC_BUTTON_HOLE_COLOR";
inline constexpr const wchar_t* IDC_CHECK_AUTO_PLAY = L"IDC_CHECK_AUTO_PLAY";
inline constexpr const wchar_t* IDC_LABEL_TITLE1 = L"IDC_LABEL_TITLE1";
inline constexpr const wchar_t* IDC_LABEL_EXPLAIN1_1 = L"IDC_LABEL_EXPLAIN1_1";
inline constexpr const wchar_t* IDC_LABEL_EXPLAIN1_2 = L"IDC_LABEL_EXPLAIN1_2";
inline constexpr const wchar_t* IDC_LABEL_TITLE2 = L"IDC_LABEL_TITLE2";
inline constexpr const wchar_t* IDC_LABEL_EXPLAIN2 = L"IDC_LABEL_EXPLAIN2";
inline constexpr const wchar_t* IDC_LABEL_TITLE3 = L"IDC_LABEL_TITLE3";
inline constexpr const wchar_t* IDC_LABEL_EXPLAIN3 = L"IDC_LABEL_EXPLAIN3";
inline constexpr const wchar_t* IDC_BUTTON_CONFIRM = L"IDC_BUTTON_CONFIRM";
inline constexpr const wchar_t* IDC_BUTTON_CANCEL = L"IDC_BUTTON_CANCEL";
inline constexpr const wchar_t* IDC_COLORPICKER = L"IDC_COLORPICKER";
inline constexpr const wchar_t* IDC_BUTTON_TITLE = L"IDC_BUTTON_TITLE";

// Texts.
inline constexpr const wchar_t* IDS_SETTING = L"IDS_SETTING";
inline constexpr const wchar_t* IDS_AUTO_PLAY0 = L"IDS_AUTO_PLAY0";
inline constexpr const wchar_t* IDS_AUTO_PLAY1 = L"IDS_AUTO_PLAY1";
inline constexpr const wchar_t* IDS_AUTO_PLAY2 = L"IDS_AUTO_PLAY2";
inline constexpr const wchar_t* IDS_BACK_COLOR0 = L"IDS_BACK_COLOR0";
inline constexpr const wchar_t* IDS_BACK_COLOR1 = L"IDS_BACK_COLOR1";
inline constexpr const wchar_t* IDS_HOLE_COLOR0 = L"IDS_HOLE_COLOR0";
inline constexpr const wchar_t* IDS_HOLE_COLOR1 = L"IDS_HOLE_COLOR1";
inline constexpr const wchar_t* IDS_COLOR = L"IDS_COLOR";
inline constexpr const wchar_t* IDS_HOLE_COLOR = L"IDS_HOLE_COLOR";
inline constexpr const wchar_t* IDS_BACK_COLOR = L"IDS_BACK_COLOR";
inline constexpr const wchar_t* IDS_HELP = L"IDS_HELP";

#include "app/BrevantApp.h"

#include "app/BrevantFrame.h"

using namespace Tizen::App;
using namespace Tizen::System;

BrevantApp::BrevantApp() : __pFrame(nullptr) {}

BrevantApp::~BrevantApp() = default;

UiApp* BrevantApp::CreateInstance() {
    return new BrevantApp();
}

bool BrevantApp::OnAppInitializing(AppRegistry&) {
    return true;
}

bool BrevantApp::OnAppInitialized() {
    __pFrame = new BrevantFrame();
    __pFrame->Construct();
    __pFrame->SetName(L"Brevant");
    AddFrame(*__pFrame);
    return true;
}

bool BrevantApp::OnAppWillTerminate() {
    return true;
}

bool BrevantApp::OnAppTerminating(AppRegistry&, bool) {
    return true;
}

void BrevantApp::OnLowMemory() {}

void BrevantApp::OnBatteryLevelChanged(BatteryLevel) {}

void BrevantApp::OnForeground() {
    if (__pFrame != nullptr) __pFrame->OnForeground();
}

void BrevantApp::OnBackground() {
    if (__pFrame != nullptr) __pFrame->OnBackground();
}

void BrevantApp::OnScreenOn() {
    if (__pFrame != nullptr) __pFrame->OnScreenOn();
}

void BrevantApp::OnScreenOff() {
    if (__pFrame != nullptr) __pFrame->OnScreenOff();
}

#include "launcher/Launcher.h"

// The application's entry point, which the phone's launcher would call.
extern "C" int OspMain(int argc, char* argv[]);

int main(int argc, char* argv[]) {
    return host::Launch(argc, argv, OspMain);
}

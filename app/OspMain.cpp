#include <new>

#include "Tizen/App/UiApp.h"
#include "Tizen/Base/Collection/ArrayList.h"
#include "Tizen/Base/Collection/SingleObjectDeleter.h"
#include "Tizen/Base/String.h"
#include "app/BrevantApp.h"

using namespace Tizen::App;
using namespace Tizen::Base;
using namespace Tizen::Base::Collection;

namespace {

const int ARGUMENT_CAPACITY = 10;

}  // namespace

/// Runs the ocarina until it has ended. The launcher finds it by its name.
extern "C" __attribute__((visibility("default"))) int OspMain(int argc, char* argv[]) {
    ArrayList arguments(SingleObjectDeleter);
    arguments.Construct(ARGUMENT_CAPACITY);
    for (int i = 0; i < argc; ++i) {
        String* pArgument = new (std::nothrow) String(argv[i]);
        if (arguments.Add(pArgument) != E_SUCCESS) delete pArgument;
    }
    return static_cast<int>(UiApp::Execute(BrevantApp::CreateInstance, &arguments));
}

#include "Tizen/Ui/Touch.h"

#include "Tizen/Ui/Control.h"
#include "runtime/screen/Node.h"

namespace Tizen {
namespace Ui {

result Touch::SetMultipointEnabled(const Control& control, bool enable) {
    control.GetNode().SetMultipoint(enable);
    return E_SUCCESS;
}

}  // namespace Ui
}  // namespace Tizen

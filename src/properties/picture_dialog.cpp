#include "properties/property_dialogs.h"

namespace brindle::properties {

bool showPictureProperties(DialogContext&, int) { return false; }

}  // namespace brindle::properties

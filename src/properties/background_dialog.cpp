#include "properties/property_dialogs.h"

namespace brindle::properties {

bool showBackgroundProperties(DialogContext&) { return false; }

}  // namespace brindle::properties

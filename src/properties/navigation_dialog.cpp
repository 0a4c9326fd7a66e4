#include "properties/property_dialogs.h"

namespace brindle::properties {

bool showNavigationProperties(DialogContext&) { return false; }

}  // namespace brindle::properties

#include "properties/property_dialogs.h"

namespace brindle::properties {

bool showPanoramaProperties(DialogContext&, int) { return false; }

}  // namespace brindle::properties

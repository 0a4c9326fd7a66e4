// The two pictures the explorer draws itself: `BildFehler`, shown for a
// picture that cannot be read, and the symbol of a media file.
#pragma once

#include "image/dib_section.h"

namespace brindle::explorer {

// A light grey card with a dark border and a red cross, size x size*3/4.
cDIBSection errorPicture(int size);

// A strip of film with a white play triangle, size x size*3/4.
cDIBSection mediaSymbol(int size);

}  // namespace brindle::explorer

// Records with a non-default value in every field, spare ones included.
#pragma once

#include "album/options.h"
#include "album/records.h"

namespace brindle::test {

ExtBlock filledExt(int seed);
PageRecord filledPage(int seed);
AlbumRecord filledAlbum();
OptionsRecord filledOptions();

}  // namespace brindle::test

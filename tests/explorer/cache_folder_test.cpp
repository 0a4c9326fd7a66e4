#include "explorer/cache_folder.h"

#include <gtest/gtest.h>

using namespace brindle::explorer;

TEST(CacheFolder, EveryFolderGetsANameOfItsOwn) {
    EXPECT_EQ(thumbnailFolderName("c:\\bilder\\2000"), "c&&bilder&2000");
    EXPECT_EQ(thumbnailFolderName("d:\\bilder\\2000"), "d&&bilder&2000");
    EXPECT_EQ(thumbnailFolderName("/home/u/Bilder/"), "&home&u&Bilder");
    EXPECT_EQ(thumbnailFolderName("/home/u/Bilder"), "&home&u&Bilder");
    EXPECT_EQ(thumbnailFolderName("/"), "&");
    EXPECT_EQ(thumbnailFolder("/p/bs", "/home/u/Bilder/"), "/p/bs/Thumbnails/&home&u&Bilder/");
}

#include "panorama/pano_temp.h"

#include <gtest/gtest.h>

using brindle::panorama::panoTempName;

TEST(PanoTemp, NamesTheWorkingCopiesInPanoTemp) {
    EXPECT_EQ(panoTempName("/home/u/bs/", "/fotos/Strand 1.PNG", "BScopy"), "/home/u/bs/PanoTemp/BScopyStrand 1.jpg");
    EXPECT_EQ(panoTempName("/home/u/bs", "C:\\Fotos\\a.b.tif", "BSPano"), "/home/u/bs/PanoTemp/BSPanoa.b.jpg");
    EXPECT_EQ(panoTempName("/p/", "ohne", "BSPano"), "/p/PanoTemp/BSPanoohne.jpg");
}

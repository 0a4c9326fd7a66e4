// Provisional steps until the import, search and composition libraries
// are merged: a plain search and a composition without blending.
#include "panorama/pano_steps.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/reduce.h"
#include "panorama/pano_temp.h"

namespace brindle::panorama {

namespace {

bool stopped(const PanoStepCallbacks& cb) { return cb.stop && cb.stop->load(); }

void status(const PanoStepCallbacks& cb, const std::string& text) {
    if (cb.status) cb.status(text);
}

void match(const cDIBSection& a, const cDIBSection& b, PanoBild& record) {
    const Surface sa = a.hdc(), sb = b.hdc();
    const int w = a.Width(), h = a.Height();
    long long best = std::numeric_limits<long long>::max();
    for (int y = -20; y <= 20; ++y)
        for (int x = w / 2; x <= w * 9 / 10; ++x) {
            long long sum = 0;
            for (int r = 20; r < h - 20; ++r) {
                const std::uint8_t* pa = sa.row(r) + x * 3;
                const std::uint8_t* pb = sb.row(r - y);
                for (int c = 0; c < 3; ++c) sum += (pa[c] - pb[c]) * (pa[c] - pb[c]);
            }
            if (sum < best) {
                best = sum;
                record.xVersatz = x;
                record.yVersatz = y;
            }
        }
    record.gematcht = 1;
}

}  // namespace

std::string reducedPicture(const std::string& programDirectory, const PanoBild& record) {
    return panoTempName(programDirectory, record.datei, kReducedPrefix);
}

bool constructPanorama(const std::vector<std::string>& pictures, const PanoSettings& settings,
                       const std::string& programDirectory, const PanoStepCallbacks& cb,
                       std::vector<PanoBild>& records, std::string& message) {
    std::error_code ec;
    std::filesystem::create_directories(programDirectory + "/PanoTemp", ec);
    std::vector<cDIBSection> reduced;
    int width = 0, height = 0;
    for (const std::string& path : pictures) {
        if (stopped(cb)) return false;
        status(cb, "Lade:" + path);
        cDIBSection dib;
        if (!LoadJPG(dib, path)) {
            const PictureFile f = LoadPictureFile(path);
            if (!f.picture) continue;
            dib = *f.picture.Handle();
        }
        if (width == 0) {
            width = dib.Width();
            height = dib.Height();
        } else if (dib.Width() != width || dib.Height() != height) {
            message = "Brindlesee panorama check that not all images have the same size. Rezise the images or use "
                      "other images with the same size.";
            return false;
        }
        cDIBSection small;
        const int h = settings.targetHeight;
        smoothResize(dib, small, std::max(1, width * h / height), h);
        PanoBild r;
        r.datei = path;
        SaveJPG(small, reducedPicture(programDirectory, r), 95);
        records.push_back(r);
        reduced.push_back(std::move(small));
        if (cb.progress) cb.progress(static_cast<int>(records.size() * 500 / pictures.size()));
    }
    const int n = static_cast<int>(records.size());
    for (int i = 0; i < seamCount(n, settings.ring360); ++i) {
        if (stopped(cb)) return false;
        match(reduced[i], reduced[(i + 1) % n], records[i]);
        if (cb.progress) cb.progress(500 + (i + 1) * 500 / n);
    }
    status(cb, "Fertig");
    return true;
}

bool composePanorama(std::vector<PanoBild>& records, const PanoSettings& settings,
                     const std::string& programDirectory, const PanoStepCallbacks&, cDIBSection& result,
                     std::string& message) {
    std::vector<cDIBSection> pics(records.size());
    int x = 0, y = 20, width = 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (!LoadJPG(pics[i], reducedPicture(programDirectory, records[i]), &message)) return false;
        width = x + pics[i].Width();
        if (i + 1 < records.size() || settings.ring360) x += records[i].xVersatz;
    }
    if (!result.Create(width, pics[0].Height() + 40)) return false;
    x = 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
        pics[i].PaintPicture(result.hdc(), x, y);
        x += records[i].xVersatz;
        y += records[i].yVersatz;
    }
    return true;
}

bool savePanorama(const cDIBSection& result, const std::vector<PanoBild>&, const PanoSettings&,
                  const std::string& path, std::string& message) {
    const ImageStatus st = SaveJPG(result, path, 95);
    if (!st.ok) message = "Fehler beim Speichern";
    return st.ok;
}

}  // namespace brindle::panorama

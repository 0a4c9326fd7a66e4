#include "studio/split_pictures.h"

#include <future>

#include "image/picture_io.h"
#include "studio/tool_io.h"

namespace brindle::studio {
namespace {

// The position of the extension's "." in the file name, or npos.
std::size_t extensionDot(const std::string& path) {
    const std::size_t slash = path.find_last_of("/\\");
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return std::string::npos;
    return dot;
}

std::string tooSmallText(const std::string& path, const SplitOptions& o, Language lang) {
    const std::string grid = std::to_string(o.rows) + " x " + std::to_string(o.columns);
    return lang == Language::German
               ? "Das Bild ist zu klein für " + grid + " Teile: " + path
               : "The picture is too small for " + grid + " tiles: " + path;
}

// One picture read and cut, or the message that tells why not.
struct CutPicture {
    std::vector<cDIBSection> tiles;
    std::optional<ToolMessage> message;
};

CutPicture readAndCut(const std::string& path, const SplitOptions& options, Language lang) {
    CutPicture cut;
    cDIBSection dib;
    ToolMessage message;
    if (!readToolPicture(path, dib, lang, message)) {
        cut.message = message;
        return cut;
    }
    cut.tiles = cutTiles(dib, options);
    if (cut.tiles.empty()) cut.message = toolError(lang, tooSmallText(path, options, lang));
    return cut;
}

// Saves the tiles of one picture; false after the first tile that failed.
bool saveTiles(const std::string& picture, const std::vector<cDIBSection>& tiles, const SplitOptions& options,
               Prompter& prompter, Language lang, SplitResult& result) {
    const ImageEnv env{lang, {}, true};
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        const std::string target = tilePath(picture, static_cast<int>(i) + 1);
        if (!SaveDIBFile(tiles[i], target, options.quality, env)) {
            tellToolError(prompter, lang, toolWriteErrorText(target, lang));
            return false;
        }
        result.written.push_back(target);
    }
    return true;
}

}  // namespace

int tileNumber(int row, int column, int rows, int columns, TileOrder order) {
    return order == TileOrder::RowByRow ? row * columns + column + 1 : column * rows + row + 1;
}

std::string tilePath(const std::string& picture, int number) {
    const std::size_t dot = extensionDot(picture);
    const std::string stem = dot == std::string::npos ? picture : picture.substr(0, dot);
    std::string extension = dot == std::string::npos ? "" : picture.substr(dot);
    if (writerFor(stem + extension, true) == PictureWriter::None)
        extension = ".png";
    return stem + "Nr" + std::to_string(number) + extension;
}

std::string splitGridError(const SplitOptions& options, Language lang) {
    if (options.rows >= 1 && options.columns >= 1) return {};
    return tr(lang, "Die Zahl der Zeilen und der Spalten muss mindestens 1 sein.",
              "The numbers of rows and columns must be at least 1.");
}

std::vector<cDIBSection> cutTiles(const cDIBSection& dib, const SplitOptions& o) {
    std::vector<cDIBSection> tiles;
    if (dib.empty() || o.rows < 1 || o.columns < 1 || o.columns > dib.Width() || o.rows > dib.Height())
        return tiles;
    const int tileWidth = dib.Width() / o.columns;
    const int tileHeight = dib.Height() / o.rows;
    tiles.resize(static_cast<std::size_t>(o.rows) * static_cast<std::size_t>(o.columns));
    for (int r = 0; r < o.rows; ++r) {
        for (int c = 0; c < o.columns; ++c) {
            cDIBSection& tile = tiles[static_cast<std::size_t>(tileNumber(r, c, o.rows, o.columns, o.order) - 1)];
            if (!tile.Create(tileWidth, tileHeight)) return {};
            dib.PaintPicture(tile.hdc(), 0, 0, tileWidth, tileHeight, c * tileWidth, r * tileHeight, SRCCOPY);
            // A camera picture's tiles keep its EXIF; the writer sets them upright.
            tile.setExif(dib.sharedExif());
        }
    }
    return tiles;
}

SplitResult splitPictures(const std::vector<std::string>& pictures, const SplitOptions& options,
                          Prompter& prompter, Language lang, const SplitCallbacks& callbacks) {
    SplitResult result;
    if (const std::string error = splitGridError(options, lang); !error.empty()) {
        tellToolError(prompter, lang, error);
        return result;
    }
    // The next picture is read and cut on a second thread while this one's
    // tiles are written; messages and files still come in list order.
    const int total = static_cast<int>(pictures.size());
    const auto prepare = [&](int i) {
        return std::async(std::launch::async, readAndCut, pictures[static_cast<std::size_t>(i)], options, lang);
    };
    std::future<CutPicture> next;
    if (total > 0) next = prepare(0);
    for (int i = 0; i < total; ++i) {
        if (callbacks.cancelled && callbacks.cancelled()) {
            result.cancelled = true;
            break;
        }
        const std::string& picture = pictures[static_cast<std::size_t>(i)];
        if (callbacks.status) callbacks.status(picture);
        const CutPicture cut = next.get();
        if (i + 1 < total) next = prepare(i + 1);
        if (cut.message) {
            tellToolMessage(prompter, *cut.message);
            ++result.failed;
        } else if (saveTiles(picture, cut.tiles, options, prompter, lang, result)) {
            ++result.pictures;
        } else {
            ++result.failed;
        }
        if (callbacks.progress) callbacks.progress(i + 1, total);
    }
    return result;
}

}  // namespace brindle::studio

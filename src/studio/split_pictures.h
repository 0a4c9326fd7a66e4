// Cutting pictures into a grid of equal tiles, each saved beside its
// picture as stem + "Nr" + number + extension.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "image/dib_section.h"

namespace brindle::studio {

// How the tiles are numbered: along the rows first, or down the columns.
enum class TileOrder { RowByRow, ColumnByColumn };

struct SplitOptions {
    int rows = 2;
    int columns = 2;
    TileOrder order = TileOrder::RowByRow;
    int quality = 80;  // JPEG quality of the tiles
};

struct SplitCallbacks {
    std::function<void(const std::string& status)> status;  // the picture being cut
    std::function<void(int done, int total)> progress;      // pictures done of all
    std::function<bool()> cancelled;                        // read between pictures
};

struct SplitResult {
    int pictures = 0;  // pictures cut completely
    int failed = 0;    // unreadable, too small, or a tile not written (a message was shown)
    bool cancelled = false;
    std::vector<std::string> written;  // tile paths in the order written
};

// Numbers start at 1, as a user counts tiles. Row by row: the top row is
// 1..columns; column by column: the left column is 1..rows.
int tileNumber(int row, int column, int rows, int columns, TileOrder order);

// stem + "Nr" + number + extension, split at the last "." of the file name.
// A type the tile writer cannot write (GIF, PCX, TGA, ...) gives PNG tiles.
std::string tilePath(const std::string& picture, int number);

// The message when rows or columns are below 1 (empty when both are fine).
std::string splitGridError(const SplitOptions& options, Language language);

// Cuts `dib` into rows x columns tiles of Width / columns x Height / rows;
// the pixels left over at the right and bottom are dropped. Tiles come in
// their numbering order. Empty when the grid does not fit the picture.
std::vector<cDIBSection> cutTiles(const cDIBSection& dib, const SplitOptions& options);

// Cuts every picture and saves its tiles; every problem is told through
// `prompter` and the run goes on with the next picture.
SplitResult splitPictures(const std::vector<std::string>& pictures, const SplitOptions& options,
                          Prompter& prompter, Language language, const SplitCallbacks& callbacks = {});

}  // namespace brindle::studio

// Pictures for the screen. The one place the canvas reads picture files,
// so that the image core can take over later.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <string>

namespace brindle::editor {

// Reads the picture; with `reduced` a larger file is decoded at `box`
// size (JPEG decoders scale while decoding). A null image when unreadable.
QImage loadDisplayPicture(const QString& path, QSize box, bool reduced);

// A stored path as a file to read: as it is, else a bare name in the
// album's directory or the program directory.
QString displayPath(const std::string& stored, const std::string& albumDirectory,
                    const std::string& programDirectory);

// The pixel size of a picture file, or an invalid size.
QSize pictureFileSize(const QString& path);

}  // namespace brindle::editor

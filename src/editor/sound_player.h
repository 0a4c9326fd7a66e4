// Sound of play mode: a page's music and links to sound files. One sound
// plays at a time; a new one ends the one before, as the media control's
// "Close" did. The player is made on first use.
#pragma once

#include <QPointer>
#include <QString>

class QAudioOutput;
class QMediaPlayer;

namespace brindle::editor {

class SoundPlayer {
public:
    static SoundPlayer& instance();
    // Ends what plays and plays `file` (looping for a page's music).
    void play(const QString& file, bool loop);
    void stop();
    // The file playing, empty when silent.
    QString current() const { return current_; }

private:
    SoundPlayer() = default;
    QPointer<QMediaPlayer> player_;  // gone with the application
    QAudioOutput* output_ = nullptr;
    QString current_;
};

// True for the endings that play as sound rather than open as a page.
bool isSoundFile(const QString& path);

}  // namespace brindle::editor

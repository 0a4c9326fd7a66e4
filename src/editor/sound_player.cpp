#include "editor/sound_player.h"

#include <QAudioOutput>
#include <QCoreApplication>
#include <QMediaPlayer>
#include <QUrl>

namespace brindle::editor {

SoundPlayer& SoundPlayer::instance() {
    static SoundPlayer player;
    return player;
}

void SoundPlayer::play(const QString& file, bool loop) {
    stop();
    if (file.isEmpty()) return;
    if (!player_) {
        // Owned by the application, so it ends before Qt Multimedia does.
        player_ = new QMediaPlayer(QCoreApplication::instance());
        output_ = new QAudioOutput(player_);
        player_->setAudioOutput(output_);
    }
    player_->setLoops(loop ? QMediaPlayer::Infinite : 1);
    player_->setSource(QUrl::fromLocalFile(file));
    player_->play();
    current_ = file;
}

void SoundPlayer::stop() {
    if (player_) {
        player_->stop();
        player_->setSource(QUrl());
    }
    current_.clear();
}

bool isSoundFile(const QString& path) {
    static const char* endings[] = {".mid", ".midi", ".wav", ".mp3", ".ogg", ".mp2", ".mp1", ".wma", ".flac"};
    for (const char* e : endings)
        if (path.endsWith(QLatin1String(e), Qt::CaseInsensitive)) return true;
    return false;
}

}  // namespace brindle::editor

// The media preview of FrmBildviewer: a selected sound or video file plays
// and stops through Qt Multimedia. Opening is asynchronous, so a machine
// without a decoder shows the player's error text and nothing waits.
#include <QAudioOutput>
#include <QHBoxLayout>
#include <QLabel>
#include <QMediaPlayer>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>
#include <QVideoWidget>

#include "explorer/bildviewer_window.h"

namespace brindle::explorer {

void FrmBildviewer::buildMedia() {
    picMedia_ = new QWidget;
    picMedia_->setObjectName("picMedia");
    auto* layout = new QVBoxLayout(picMedia_);
    layout->setContentsMargins(2, 2, 2, 2);
    auto* video = new QVideoWidget;
    video->setObjectName("videoMedia");
    video->setMinimumHeight(120);
    layout->addWidget(video, 1);
    lblMedia_ = new QLabel;
    lblMedia_->setObjectName("lblMedia");
    lblMedia_->setWordWrap(true);
    layout->addWidget(lblMedia_);
    auto* buttons = new QHBoxLayout;
    cmdPlay_ = new QPushButton;
    cmdPlay_->setObjectName("cmdPlay");
    cmdStop_ = new QPushButton;
    cmdStop_->setObjectName("cmdStop");
    buttons->addWidget(cmdPlay_);
    buttons->addWidget(cmdStop_);
    layout->addLayout(buttons);
    picMedia_->hide();
}

// The player and its sound output come with the first media file, so a
// folder of pictures never wakes the sound system.
void FrmBildviewer::makePlayer() {
    player_ = new QMediaPlayer(this);
    audio_ = new QAudioOutput(this);
    player_->setAudioOutput(audio_);
    player_->setVideoOutput(picMedia_->findChild<QVideoWidget*>("videoMedia"));
    connect(cmdPlay_, &QPushButton::clicked, player_, &QMediaPlayer::play);
    connect(cmdStop_, &QPushButton::clicked, player_, &QMediaPlayer::stop);
    connect(
        player_, &QMediaPlayer::errorOccurred, this,
        [this](QMediaPlayer::Error, const QString& text) {
            lblMedia_->setText(
                QString::fromUtf8(t("Fehler beim Abspielen: ", "Error while playing: ")) + text);
        });
    connect(player_, &QMediaPlayer::playbackStateChanged, this,
            [this](QMediaPlayer::PlaybackState state) {
                if (player_->error() != QMediaPlayer::NoError) return;
                lblMedia_->setText(state == QMediaPlayer::PlayingState
                                       ? QString::fromUtf8(t("Wiedergabe", "Playing"))
                                       : QString::fromUtf8(t("Angehalten", "Stopped")));
            });
}

void FrmBildviewer::showMedia(const FileEntry* row) {
    if (!row || !isMediaName(row->name)) {
        if (player_ && picMedia_->isVisible()) {
            player_->stop();
            player_->setSource(QUrl());
        }
        picMedia_->hide();
        return;
    }
    if (!player_) makePlayer();
    const QUrl url = QUrl::fromLocalFile(QString::fromStdString(row->path));
    if (player_->source() == url && picMedia_->isVisible()) return;
    player_->stop();
    lblMedia_->setText(QString::fromStdString(row->name));
    player_->setSource(url);
    picMedia_->show();
}

}  // namespace brindle::explorer

// The animations of pictures as live widgets: play mode lays them over the
// canvas, and the picture dialog shows them as previews. They play the
// same effects, from the same parameters, as the HTML album's runtime.
#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "editor/effect_pixels.h"

class QMovie;

namespace brindle::editor {

// A widget playing the animation `animationSpec` over `picture` (the
// element's picture at its shown size), or nullptr when the string names no
// animation. The widget runs at the screen's rate and stops when hidden.
QWidget* createEffectWidget(const std::string& animationSpec, const QImage& picture, QWidget* parent);

// What play mode knows beyond the picture.
struct EffectOptions {
    std::string frameSpec;          // the frame: the effect plays inside it
    QString file;                   // the picture file, which "AnyGif" plays as it is
    QSize pageBox;                  // the element's box on the page (drop counts follow it)
    std::function<void()> clicked;  // a click on the effect: the element's link
};
QWidget* createEffectWidget(const std::string& animationSpec, const QImage& picture, const EffectOptions& options,
                            QWidget* parent);

// The common part: a timer at the screen's rate while visible, a clock
// since the start, and a picture redrawn for every tick.
class EffectWidget : public QWidget {
    Q_OBJECT
public:
    EffectWidget(const QImage& picture, const EffectOptions& options, QWidget* parent);
    // "Lake", "Rain", "Snow", "UnderWater", "Pano", "AnyGif".
    virtual QString kind() const = 0;
    bool running() const { return timer_.isActive(); }
    // The frame that the widget shows at `ms` milliseconds (tests, screenshots).
    QImage frameAt(double ms);

protected:
    // Draws the frame at `ms` into `out`; `boxed` is the picture at the widget's size.
    virtual void render(QImage& out, double ms) = 0;
    virtual void prepare() {}
    const QImage& boxed() const { return boxed_; }
    effects::Inner inner() const { return inner_; }
    const QImage& picture() const { return picture_; }
    const EffectOptions& options() const { return options_; }
    // The box height on the page over the widget's height (zoom).
    double pageScale() const;
    virtual bool keepsLakeTop() const { return false; }
    virtual double frontier() const { return 0; }

    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void rebuild();

    QImage picture_;
    EffectOptions options_;
    QImage boxed_;
    QImage frame_;
    effects::Inner inner_;
    QTimer timer_;
    QElapsedTimer clock_;
};

class LakeEffect : public EffectWidget {
    Q_OBJECT
public:
    LakeEffect(const QImage& picture, const EffectOptions& options, double speed, double frontier, QWidget* parent);
    QString kind() const override { return "Lake"; }
    double speed() const { return speed_; }
    double frontier() const override { return frontier_; }

protected:
    void render(QImage& out, double ms) override;
    bool keepsLakeTop() const override { return frontier_ > 0; }

private:
    double speed_;
    double frontier_;
};

// Rain and snow share one control: mode 1 snow, 2 rain; the density base is 21 for snow, 31 for rain.
class PrecipitationEffect : public EffectWidget {
    Q_OBJECT
public:
    PrecipitationEffect(const QImage& picture, const EffectOptions& options, bool snow, double speed, double density,
                        QWidget* parent);
    QString kind() const override { return mode() == 1 ? "Snow" : "Rain"; }
    int mode() const { return snow_ ? 1 : 2; }
    int densityBase() const { return snow_ ? 21 : 31; }
    double speed() const { return speed_; }
    double density() const { return density_; }
    int dropCount() const { return static_cast<int>(drops_.size()); }

protected:
    void prepare() override;
    void render(QImage& out, double ms) override;

private:
    bool snow_;
    double speed_;
    double density_;
    std::vector<effects::Drop> drops_;
};

class UnderwaterEffect : public EffectWidget {
    Q_OBJECT
public:
    UnderwaterEffect(const QImage& picture, const EffectOptions& options, effects::Underwater waves, QWidget* parent);
    QString kind() const override { return "UnderWater"; }
    const effects::Underwater& waves() const { return waves_; }

protected:
    void render(QImage& out, double ms) override;

private:
    effects::Underwater waves_;
};

class PanoStripEffect : public EffectWidget {
    Q_OBJECT
public:
    PanoStripEffect(const QImage& picture, const EffectOptions& options, double speed, double anzahl, QWidget* parent);
    QString kind() const override { return "Pano"; }
    double velocity() const { return velocity_; }

protected:
    void prepare() override;
    void render(QImage& out, double ms) override;

private:
    double velocity_;
    QImage strip_;
};

// An animated GIF stands as it is: QMovie plays its own frames and times.
class GifEffect : public EffectWidget {
    Q_OBJECT
public:
    GifEffect(const QImage& picture, const EffectOptions& options, QWidget* parent);
    QString kind() const override { return "AnyGif"; }
    QMovie* movie() const { return movie_; }

protected:
    void render(QImage& out, double ms) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QMovie* movie_ = nullptr;
};

}  // namespace brindle::editor

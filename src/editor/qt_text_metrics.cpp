#include "editor/qt_text_metrics.h"

#include <QFontMetrics>
#include <QStringList>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <cmath>

namespace brindle::editor {

namespace {
QStringList paragraphs(const std::string& text) {
    QString s = QString::fromStdString(text);
    s.remove(QChar('\r'));
    return s.split(QChar('\n'));
}
}  // namespace

QFont qtFont(const FontSpec& font, int points) {
    QFont f(QString::fromStdString(fontNameOf(font)));
    f.setPixelSize(std::max(1, static_cast<int>(std::lround(points * 96.0 / 72.0))));
    f.setBold(isTrue(font.bold));
    f.setItalic(isTrue(font.italic));
    f.setUnderline(isTrue(font.underline));
    return f;
}

TextSize QtTextMetrics::labelSize(const FontSpec& font, int size, const std::string& text) {
    const QFontMetrics fm(qtFont(font, size));
    const QStringList lines = paragraphs(text);
    int width = 0;
    for (const QString& line : lines) width = std::max(width, fm.horizontalAdvance(line));
    return {width, static_cast<int>(lines.size()) * fm.height()};
}

std::vector<std::string> QtTextMetrics::boxLines(const FontSpec& font, int width, const std::string& text) {
    std::vector<std::string> out;
    const QFont f = qtFont(font, fontSizeOf(font));
    for (const QString& para : paragraphs(text)) {
        if (para.isEmpty()) {
            out.emplace_back();
            continue;
        }
        QTextLayout layout(para, f);
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(std::max(1, width));
            out.push_back(para.mid(line.textStart(), line.textLength()).toStdString());
        }
        layout.endLayout();
    }
    return out;
}

}  // namespace brindle::editor

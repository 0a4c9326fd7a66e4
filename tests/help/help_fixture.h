// Small help pages written by the tests into a temporary help folder:
// "<root>/de/<id>.html", "<root>/en/<id>.html" and "<root>/images/".
#pragma once

#include <QDir>
#include <QFile>
#include <QImage>
#include <QString>
#include <QTemporaryDir>
#include <QTest>

namespace brindle::test {

class HelpPages {
  public:
    HelpPages() { QDir().mkpath(root() + "images"); }

    // Ends in '/'.
    QString root() const { return dir_.path() + "/help/"; }

    // `lang` is "de" or "en"; the heading names language and page.
    void write(const QString& lang, const QString& id, const QString& body = {}) {
        QDir().mkpath(root() + lang);
        QFile f(root() + lang + "/" + id + ".html");
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        const QString heading = lang.toUpper() + " " + id;
        f.write(("<html><head><meta charset=\"utf-8\"><title>" + heading +
                 "</title></head><body><h1>" + heading + "</h1>" + body + "</body></html>")
                    .toUtf8());
    }
    void both(const QString& id, const QString& body = {}) {
        write("de", id, body);
        write("en", id, body);
    }
    // A picture of one colour for the pages to show.
    void picture(const QString& name, QColor colour, int size = 40) {
        QImage img(size, size, QImage::Format_RGB32);
        img.fill(colour);
        QVERIFY(img.save(root() + "images/" + name));
    }

  private:
    QTemporaryDir dir_;
};

}  // namespace brindle::test

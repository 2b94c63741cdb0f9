#include "host/actions/canvasactionmanagerfactory.h"
#include "host/canvas/pagepicture.h"
#include "host/canvas/pagereader.h"
#include "tests/support/temporaryfiles.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// 200 by 100: a red square on the left, a hidden one and a text on the right.
Page page()
{
    static CanvasActionManagerFactory managers(nullptr);
    auto read = PageReader(managers).read(
        R"({"format": "korvane-page", "version": 1, "size": [200, 100], "background": "#00ff00", "layers": [
            {"name": "a", "shapes": [{"class": "Rectangle", "place": [20, 20, 60, 60],
             "properties": {"FillColor": "#ff0000", "LineColor": "#ff0000"}},
            {"class": "Label", "place": [110, 30, 80, 40], "properties": {"Text": "words"}}]},
            {"name": "b", "visible": false, "shapes": [{"class": "Rectangle", "place": [0, 0, 200, 100],
             "properties": {"FillColor": "#0000ff"}}]}]})",
        text("page"));
    if (!read || !read->problems.isEmpty())
        qFatal("the page can't be read");
    return std::move(*read);
}

QByteArray bytesOf(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_PagePicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anImageHasThePageInItsSize()
    {
        const TemporaryFiles files;
        const QString name = files.path(text("p.png"));
        QVERIFY(PagePicture::write(*page().canvas, name, 2));
        const QImage image(name);
        QCOMPARE(image.size(), QSize(400, 200));
        QCOMPARE(image.pixelColor(100, 100), QColor(Qt::red));
        QCOMPARE(image.pixelColor(10, 10), QColor(Qt::green));
    }

    void anSvgIsDrawnWithVectors()
    {
        const TemporaryFiles files;
        const QString name = files.path(text("p.svg"));
        QVERIFY(PagePicture::write(*page().canvas, name, 2));
        const QByteArray svg = bytesOf(name);
        QVERIFY2(svg.contains(">words<"), svg.constData());
        QVERIFY(!svg.contains("<image"));
        QSvgRenderer renderer(name);
        QCOMPARE(renderer.viewBox().size(), QSize(400, 200));
        QImage image(400, 200, QImage::Format_RGB32);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        QCOMPARE(image.pixelColor(100, 100), QColor(Qt::red));
        QCOMPARE(image.pixelColor(10, 10), QColor(Qt::green));
    }

    void aPdfHasOnePageOfThatSize()
    {
        const TemporaryFiles files;
        const QString name = files.path(text("p.pdf"));
        QVERIFY(PagePicture::write(*page().canvas, name, 2));
        const QByteArray pdf = bytesOf(name);
        QVERIFY(pdf.startsWith("%PDF"));
        QVERIFY(pdf.contains("/Count 1"));
        QVERIFY(!pdf.contains("/Subtype /Image"));
        QVERIFY(pdf.contains("/FontFile")); // the text is text
        // 400 units of 1/96 inch are 300 points.
        QVERIFY2(pdf.contains("/MediaBox [0 0 300.000000 150.000000]") || pdf.contains("/MediaBox [0 0 300 150]"),
                 pdf.mid(pdf.indexOf("/MediaBox"), 60).constData());
    }

    void whatCantBeWrittenIsTold()
    {
        const TemporaryFiles files;
        for (const char* name : {"none/p.png", "none/p.svg", "none/p.pdf", "p.nonsense"}) {
            const auto written = PagePicture::write(*page().canvas, files.path(text(name)), 1);
            QVERIFY(!written);
            QVERIFY2(written.error().startsWith(files.path(text(name)) + text(": can't be written")),
                     qPrintable(written.error()));
        }
    }
};

QTEST_MAIN(tst_PagePicture)
#include "tst_pagepicture.moc"

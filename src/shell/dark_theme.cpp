#include "shell/dark_theme.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QPalette>
#include <QStyleFactory>

namespace {

// One face for Chinese and Latin letters: from two, as the system would mix them, the Chinese ones
// look bold beside the others.
void unifyFont(QApplication &application)
{
    const QStringList installed = QFontDatabase().families(QFontDatabase::SimplifiedChinese);
    for (const QString &family :
         {QStringLiteral("Microsoft YaHei UI"), QStringLiteral("Noto Sans CJK SC")}) {
        if (!installed.contains(family))
            continue;
        QFont font = QApplication::font();
        font.setFamily(family);
        application.setFont(font);
        return;
    }
}

} // namespace

void applyDarkTheme(QApplication &application)
{
    application.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QColor surface(53, 53, 53);
    const QColor dimmed(127, 127, 127);
    QPalette palette;
    palette.setColor(QPalette::Window, surface);
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::Base, QColor(42, 42, 42));
    palette.setColor(QPalette::AlternateBase, QColor(66, 66, 66));
    palette.setColor(QPalette::ToolTipBase, surface);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::Button, surface);
    palette.setColor(QPalette::ButtonText, Qt::white);
    // The lines that Fusion draws beside tabs and frames, white otherwise.
    palette.setColor(QPalette::Light, QColor(75, 75, 75));
    palette.setColor(QPalette::Link, QColor(42, 130, 218));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    for (const QPalette::ColorRole role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, dimmed);
    application.setPalette(palette);
    unifyFont(application);
    QFile sheet(QStringLiteral(":/shell/dark.qss"));
    if (sheet.open(QIODevice::ReadOnly))
        application.setStyleSheet(QString::fromUtf8(sheet.readAll()));
}

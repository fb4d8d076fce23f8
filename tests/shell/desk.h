// The main window as a user has it, with folders of its own.
#pragma once

#include "settings/settings_store.h"
#include "shell/editor_tabs.h"
#include "shell/frameless_main_window.h"
#include "shell/mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <functional>

namespace Shell {

// What is kept for the user comes into `folder`, not into his own.
inline void useFolders(const QString &folder)
{
    qputenv("XDG_DATA_HOME", (folder + QStringLiteral("/data")).toUtf8());
    qputenv("XDG_CONFIG_HOME", (folder + QStringLiteral("/config")).toUtf8());
}

// Acts in the next dialog of the type as soon as it is open. The test fails where none comes.
template <typename Dialog>
void inNext(const std::function<void(Dialog *)> &act,
            QDeadlineTimer patience = QDeadlineTimer(10000))
{
    QTimer::singleShot(0, qApp, [act, patience] {
        QWidget *modal = QApplication::activeModalWidget();
        if (auto *dialog = qobject_cast<Dialog *>(modal)) {
            act(dialog);
        } else if (!patience.hasExpired()) {
            QThread::msleep(1);
            inNext(act, patience);
        } else {
            if (modal)
                modal->close();
            QFAIL(Dialog::staticMetaObject.className());
        }
    });
}

template <typename Widget>
Widget *withText(const QWidget *parent, const QString &text)
{
    for (auto *widget : parent->findChildren<Widget *>()) {
        if (widget->text() == text)
            return widget;
    }
    return nullptr;
}

template <typename Widget>
Widget *withName(const QWidget *parent, const QString &accessibleName)
{
    for (auto *widget : parent->findChildren<Widget *>()) {
        if (widget->accessibleName() == accessibleName)
            return widget;
    }
    return nullptr;
}

// Clicks the button of the next box and keeps its text.
inline void answerNextBox(const QString &button, QString *text = nullptr)
{
    inNext<QMessageBox>([button, text](QMessageBox *box) {
        if (text)
            *text = box->text();
        for (QAbstractButton *candidate : box->buttons()) {
            if (candidate->text().remove(QLatin1Char('&')) == button) {
                candidate->click();
                return;
            }
        }
        box->reject();
        QFAIL(qPrintable(QStringLiteral("no button ") + button));
    });
}

// One start of VorelDesk.
struct Desk
{
    explicit Desk(const QString &folder) : settings(folder + QStringLiteral("/vlide.ini"))
    {
        settings.set(Setting::Project::defaultPath, folder + QStringLiteral("/projects"));
        QDir().mkpath(folder + QStringLiteral("/projects"));
        frame.setContent(window);
        window->attachFrame(frame);
        frame.resize(1200, 800);
        frame.show();
        frame.activateWindow();
    }

    template <typename Widget>
    Widget *find(const QString &accessibleName) const
    {
        return withName<Widget>(window, accessibleName);
    }
    CodeEditor *editor() const { return tabs->currentEditor(); }
    QAction *action(const char *name) const
    {
        return window->findChild<QAction *>(QLatin1String(name));
    }
    // To whatever has the focus. Some platforms give it to no window when a dialog closes.
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        if (!QApplication::activeWindow()) {
            frame.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&frame));
        }
        QWidget *focused = QApplication::focusWidget();
        QTest::keyClick(focused ? focused : window, Qt::Key(key), modifiers);
    }

    SettingsStore settings;
    FramelessMainWindow frame;
    MainWindow *window = new MainWindow(settings); // the frame's
    EditorTabs *tabs = window->findChild<EditorTabs *>();
};

} // namespace Shell

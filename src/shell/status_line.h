// StatusLine: what the bar at the bottom of the main window tells.
#pragma once

#include <QObject>

class QLabel;
class QProgressBar;
class QStatusBar;
class QToolButton;

class StatusLine : public QObject
{
    Q_OBJECT

public:
    explicit StatusLine(QStatusBar *bar);

    // Stays until the next one.
    void showMessage(const QString &sentence);
    // What the build is at, beside its bar; 0 to 100 percent.
    void showProgress(int percent, const QString &stage);
    void hideProgress();
    void setPosition(int line, int column);
    // Without an editor there is none.
    void clearPosition();
    void setIssueCounts(int errors, int warnings);

signals:
    // The user wants to see the problems.
    void issuesClicked();

private:
    QLabel *m_message;
    QProgressBar *m_progress;
    QToolButton *m_issues;
    QLabel *m_position;
};

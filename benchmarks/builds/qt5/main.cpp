// The program: one window, a button with one handler.
#include "work.h"

#include <QApplication>
#include <QMainWindow>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(bool quitAfterShow) : m_quitAfterShow(quitAfterShow)
    {
        setWindowTitle(QStringLiteral("订单"));
        resize(480, 320);
        auto *button = new QPushButton(QStringLiteral("结算"), this);
        button->setGeometry(20, 20, 120, 32);
        connect(button, &QPushButton::clicked, this, &MainWindow::onClicked);
    }

protected:
    // The window shows from the first paint on.
    void paintEvent(QPaintEvent *event) override
    {
        QMainWindow::paintEvent(event);
        if (m_told)
            return;
        m_told = true;
        std::puts("shown");
        std::fflush(stdout);
        if (m_quitAfterShow)
            QTimer::singleShot(0, this, &QMainWindow::close);
    }

private slots:
    void onClicked()
    {
        setWindowTitle(QStringLiteral("结果 %1").arg(settleAll(10000001))); // 备注 20000001
    }

private:
    bool m_quitAfterShow = false;
    bool m_told = false;
};

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    MainWindow window(application.arguments().contains(QStringLiteral("--quit-after-show")));
    window.show();
    return application.exec();
}

#include "main.moc"

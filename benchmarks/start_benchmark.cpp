// Measures how long the IDE takes from the start of its process to its painted window, and prints a
// table. The X display is asked, so that the program is the one that users get.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

namespace {

constexpr int starts = 10;
constexpr int longestWait = 30000; // milliseconds
constexpr int pollTime = 3;        // milliseconds
// Smaller windows are those of boxes and hints.
constexpr int leastWidth = 600;
// The strip at the top of a window that is looked at, and how many colours show that it is painted:
// smoothed text has many.
constexpr int stripHeight = 80;
constexpr int paintedColors = 24;

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}

class Display
{
public:
    Display() : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (!xcb_connection_has_error(m_connection))
            m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }
    ~Display() { xcb_disconnect(m_connection); }
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    bool isOpen() const { return m_root != XCB_NONE; }
    bool showsPaintedWindow() const { return hasPainted(m_root); }

private:
    // A window manager puts windows into frames of its own.
    bool hasPainted(xcb_window_t parent) const
    {
        const auto tree = owned(
            xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, parent), nullptr));
        if (!tree)
            return false;
        const xcb_window_t *children = xcb_query_tree_children(tree.get());
        return std::any_of(children, children + xcb_query_tree_children_length(tree.get()),
                           [this](xcb_window_t window) {
                               return isShown(window) && (isPainted(window) || hasPainted(window));
                           });
    }

    bool isShown(xcb_window_t window) const
    {
        const auto attributes = owned(xcb_get_window_attributes_reply(
            m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
        return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    bool isPainted(xcb_window_t window) const
    {
        const auto size = owned(
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
        if (!size || size->width < leastWidth || size->height < stripHeight)
            return false;
        const auto image =
            owned(xcb_get_image_reply(m_connection,
                                      xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window,
                                                    0, 0, size->width, stripHeight, ~0U),
                                      nullptr));
        if (!image)
            return false;
        const auto *pixels = reinterpret_cast<const quint32 *>(xcb_get_image_data(image.get()));
        QSet<quint32> colors;
        for (int i = 0; i < xcb_get_image_data_length(image.get()) / 4; ++i)
            colors.insert(pixels[i]);
        return colors.size() >= paintedColors;
    }

    xcb_connection_t *m_connection;
    xcb_window_t m_root = XCB_NONE;
};

// Milliseconds from the start of the program to its painted window; none when it shows no window.
std::optional<double> timeToWindow(const Display &display, const QString &program,
                                   const QString &home)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("VOREL_SETTINGS"), home + QStringLiteral("/settings.ini"));
    process.setProcessEnvironment(environment);
    QElapsedTimer timer;
    timer.start();
    process.start(program, QStringList());
    std::optional<double> time;
    while (!time && process.state() != QProcess::NotRunning && !timer.hasExpired(longestWait)) {
        QThread::msleep(pollTime);
        if (display.showsPaintedWindow())
            time = double(timer.nsecsElapsed()) / 1e6;
    }
    process.kill();
    process.waitForFinished();
    while (display.showsPaintedWindow())
        QThread::msleep(pollTime);
    return time;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    const Display display;
    if (argc < 2 || !display.isOpen()) {
        out << "usage: start_benchmark PROGRAM, on an X display\n";
        return 2;
    }
    const QTemporaryDir home;
    std::vector<double> times;
    for (int i = 0; i <= starts; ++i) {
        const auto time = timeToWindow(display, QString::fromLocal8Bit(argv[1]), home.path());
        if (!time) {
            out << "no window was shown\n";
            return 1;
        }
        if (i == 0)
            out << "first start of a new user: " << qRound(*time) << " ms\n";
        else
            times.push_back(*time);
    }
    std::sort(times.begin(), times.end());
    out << "next " << starts << " starts: median " << qRound(times[times.size() / 2])
        << " ms, from " << qRound(times.front()) << " to " << qRound(times.back()) << " ms\n";
    return 0;
}

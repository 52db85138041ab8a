/// watch_start COMMAND... - starts a program and watches the upper left part of its window from
/// outside, where both a sidebar and a bare tree have their first rows. Prints the milliseconds
/// from the start until there is text, then resident, proportional and private memory in KiB once
/// the window has come to rest. The program is ended with SIGTERM.

#include <X11/extensions/Xdamage.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{30};
constexpr std::chrono::milliseconds rest{800};

// Below a menu bar, above whatever a sidebar has at its foot, inside of its margins.
constexpr int watchedX = 6;
constexpr int watchedY = 40;
constexpr unsigned watchedWidth = 190;
constexpr unsigned watchedHeight = 130;
constexpr int pixelsOfText = 100;

int ignoreErrors(Display *, XErrorEvent *)
{
    return 0; // windows come and go while they are looked at
}

class Watch
{
public:
    explicit Watch(Display *display)
        : m_display(display)
    {
        int damageError = 0;
        XSetErrorHandler(ignoreErrors);
        if (XDamageQueryExtension(display, &m_damageEvent, &damageError))
            XSelectInput(display, DefaultRootWindow(display), PropertyChangeMask);
    }

    /// Answers whether there was text in the window of the process before time was up.
    bool waitForText(pid_t pid)
    {
        const auto end = Clock::now() + patience;
        while (Clock::now() < end) {
            while (XPending(m_display) > 0) {
                XEvent event;
                XNextEvent(m_display, &event);
                if (event.type == PropertyNotify && m_window == None)
                    findWindow(pid);
                else if (event.type == m_damageEvent + XDamageNotify)
                    XDamageSubtract(m_display, m_damage, None, None);
                else
                    continue;
                if (m_window != None && showsText())
                    return true;
            }
            pollfd connection{ConnectionNumber(m_display), POLLIN, 0};
            ::poll(&connection, 1, 1000);
        }
        return false;
    }

private:
    /// The first number that a window's property holds, or all of them through count.
    std::unique_ptr<unsigned char, int (*)(void *)> property(Window window, const char *name,
                                                             Atom type, unsigned long &count)
    {
        Atom actualType = None;
        int format = 0;
        unsigned long left = 0;
        unsigned char *data = nullptr;
        count = 0;
        XGetWindowProperty(m_display, window, XInternAtom(m_display, name, False), 0, 1024, False,
                           type, &actualType, &format, &count, &left, &data);
        return {data, XFree};
    }

    void findWindow(pid_t pid)
    {
        unsigned long count = 0;
        const auto list =
            property(DefaultRootWindow(m_display), "_NET_CLIENT_LIST", XA_WINDOW, count);
        const auto *windows = reinterpret_cast<const Window *>(list.get());
        for (unsigned long i = 0; i < count; ++i) {
            unsigned long numbers = 0;
            const auto owner = property(windows[i], "_NET_WM_PID", XA_CARDINAL, numbers);
            if (numbers != 1 || *reinterpret_cast<const long *>(owner.get()) != pid)
                continue;
            m_window = windows[i];
            m_damage = XDamageCreate(m_display, m_window, XDamageReportNonEmpty);
            return;
        }
    }

    /// Whether enough pixels stand out from the most frequent colour.
    bool showsText()
    {
        XImage *image = XGetImage(m_display, m_window, watchedX, watchedY, watchedWidth,
                                  watchedHeight, AllPlanes, ZPixmap);
        if (!image)
            return false;
        std::map<unsigned long, int> colours;
        for (int y = 0; y < image->height; ++y) {
            for (int x = 0; x < image->width; ++x)
                ++colours[XGetPixel(image, x, y)];
        }
        XDestroyImage(image);
        auto ground = colours.begin();
        for (auto colour = colours.begin(); colour != colours.end(); ++colour) {
            if (colour->second > ground->second)
                ground = colour;
        }
        int text = 0;
        for (const auto &[colour, pixels] : colours) {
            if (std::abs(brightness(colour) - brightness(ground->first)) > 200)
                text += pixels;
        }
        return text >= pixelsOfText;
    }

    static int brightness(unsigned long colour)
    {
        return static_cast<int>((colour >> 16 & 255) + (colour >> 8 & 255) + (colour & 255));
    }

    Display *m_display;
    int m_damageEvent = 0;
    Window m_window = None;
    Damage m_damage = None;
};

std::map<std::string, long> memoryOf(pid_t pid)
{
    std::ifstream file("/proc/" + std::to_string(pid) + "/smaps_rollup");
    std::map<std::string, long> kibibytes;
    std::string key;
    while (file >> key) {
        long value = 0;
        if (file >> value)
            kibibytes[key] += value;
        else
            file.clear();
        file.ignore(1024, '\n');
    }
    return kibibytes;
}

} // namespace

int main(int argc, char **argv)
{
    Display *display = argc > 1 ? XOpenDisplay(nullptr) : nullptr;
    if (!display) {
        std::fputs("usage: watch_start COMMAND... (with a display)\n", stderr);
        return 2;
    }
    Watch watch(display);
    XSync(display, False);

    const auto start = Clock::now();
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::close(ConnectionNumber(display));
        ::execv(argv[1], argv + 1);
        ::_exit(127);
    }
    const bool shown = watch.waitForText(pid);
    const std::chrono::duration<double, std::milli> taken = Clock::now() - start;
    std::this_thread::sleep_for(rest);
    auto memory = memoryOf(pid);
    ::kill(pid, SIGTERM);
    ::waitpid(pid, nullptr, 0);
    XCloseDisplay(display);
    if (!shown || memory["Rss:"] == 0) {
        std::fprintf(stderr, "%s showed no text\n", argv[1]);
        return 1;
    }
    std::printf("%.1f %ld %ld %ld\n", taken.count(), memory["Rss:"], memory["Pss:"],
                memory["Private_Dirty:"] + memory["Private_Clean:"]);
    return 0;
}

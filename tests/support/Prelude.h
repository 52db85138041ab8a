#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <thread>
#include <tuple>

/// Part of every source of a test program: what nearly all of them need, and how failed comparisons
/// show Qt's values, so that all agree.

using namespace Qt::StringLiterals;

/// Waits a while for what happens as events are handled.
#define EXPECT_SOON(condition) EXPECT_TRUE(QTest::qWaitFor([&] { return bool(condition); }))
#define ASSERT_SOON(condition) ASSERT_TRUE(QTest::qWaitFor([&] { return bool(condition); }))

/// Makes a file of this content, and the folders above it. Returns its path.
inline QString makeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
                && file.write(content) == content.size())
        << qPrintable(path);
    return path;
}

/// A picture of one colour.
inline QImage filled(int width, int height, const QColor &color)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

/// Shows the window and waits until it has the keyboard.
inline bool activate(QWidget &window)
{
    window.show();
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window);
}

/// Does it on a thread of its own, while this one handles events.
inline void onThread(const std::function<void()> &work)
{
    std::atomic<bool> isDone = false;
    std::thread thread([&] {
        work();
        isDone = true;
    });
    EXPECT_SOON(isDone.load());
    thread.join();
}

/// Whether a thread of this process waits for something, such as another thread.
inline bool isAsleep(pid_t thread)
{
    QFile state(u"/proc/self/task/%1/stat"_s.arg(thread));
    const QByteArray text = state.open(QIODevice::ReadOnly) ? state.readAll() : QByteArray();
    return text.mid(text.lastIndexOf(')')).startsWith(") S");
}

/// Nothing where the file cannot be read.
inline QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void makePipe(const QString &path)
{
    EXPECT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0) << qPrintable(path);
}

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << (text.isNull() ? "(null)" : '"' + text.toStdString() + '"');
}

inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toStdString() << '"';
}

inline void PrintTo(const QRect &rect, std::ostream *out)
{
    *out << rect.x() << ',' << rect.y() << ' ' << rect.width() << 'x' << rect.height();
}

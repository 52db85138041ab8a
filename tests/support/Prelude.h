#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
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

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << (text.isNull() ? "(null)" : '"' + text.toStdString() + '"');
}

inline void PrintTo(const QRect &rect, std::ostream *out)
{
    *out << rect.x() << ',' << rect.y() << ' ' << rect.width() << 'x' << rect.height();
}

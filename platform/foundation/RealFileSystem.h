#pragma once

#include "platform/foundation/FileSystem.h"

/// The file system as the running program has it.
class RealFileSystem : public FileSystem
{
public:
    std::optional<FileAttributes> attributes(const QString &path) const override;
    bool exists(const QString &path) const override;
    std::unique_ptr<HeldItem> hold(const QString &path) override;
    std::optional<QByteArray> readFile(const QString &path, qsizetype limit) const override;
    bool writeFile(const QString &path, QByteArrayView content) override;
    bool replaceFile(const QString &path, QByteArrayView content) override;
};

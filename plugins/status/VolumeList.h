#pragma once

#include "Volumes.h"

#include "plugins/common/Card.h"
#include "plugins/common/Texts.h"

#include <map>

class VolumeRow;
class QLabel;
class QVBoxLayout;

/// A card with one row per volume: its name, how much is used and free, and a bar.
class VolumeList : public Card
{
public:
    explicit VolumeList(Texts texts);

    /// Rows of volumes that were shown before keep their figures.
    void setVolumes(const std::vector<Volume> &volumes);
    /// @param usage nothing when the volume does not tell.
    void setUsage(const QString &path, const std::optional<VolumeUsage> &usage);
    /// The volume does not answer; the figures shown last would be untrue by now.
    void setSilent(const QString &path);

private:
    Texts m_texts;
    QVBoxLayout *m_column;
    QLabel *m_empty;
    std::vector<Volume> m_volumes;
    std::map<QString, VolumeRow *> m_rows; ///< by path; the rows are the card's children
};

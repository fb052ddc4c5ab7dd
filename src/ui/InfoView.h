#pragma once

#include <QWidget>

#include <functional>

class QLabel;

namespace orv {

class MySinglePic;
class PicTableModel;
class Preferences;

// The info view beside the timeline: for the selected item its name, folder and camera, where
// its date comes from, the offsets in force (the folder's and its own), its place, and every
// date its files hold with what a save would write there. The NEW values come from the model's
// calculation with the preferences as they stand; nothing is calculated while a save owns the
// items.
class InfoView : public QWidget
{
    Q_OBJECT
public:
    InfoView(const Preferences &prefs, const PicTableModel &cells, QWidget *parent = nullptr);

    // Shows this item (none: a hint). Only while no save runs.
    void showPic(MySinglePic *pic);
    // The text on show, for tests and accessibility.
    QString text() const;

private:
    const Preferences &m_prefs;
    const PicTableModel &m_cells;
    QLabel *m_label;
};

} // namespace orv

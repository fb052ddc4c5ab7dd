#pragma once

#include <QWidget>

#include <functional>

class QPushButton;
class QTreeWidget;

namespace orv {

class AppController;
class MySingleFolder;
class MySinglePic;
enum class DateChangeResult;

// The imported tracks with their times, points and the photos they placed. From it the user
// links the chosen tracks to the folders on show or lets them go, and opens the chosen items to
// their folders' tracks or closes them, and takes a track's zone as the source zone of the folders
// on show whose camera wrote no offset tags: each one undo step through the owner of changes.
class TrackListView : public QWidget
{
    Q_OBJECT
public:
    using FoldersOnShow = std::function<QList<MySingleFolder *>()>;
    using ChosenPics = std::function<QList<MySinglePic *>()>;
    TrackListView(AppController &controller, FoldersOnShow foldersOnShow, ChosenPics chosenPics,
                  QWidget *parent = nullptr);

    enum Column {
        NameColumn,
        StartColumn,
        EndColumn,
        PointsColumn,
        PlacedColumn,
        FoldersColumn,
        ZoneColumn,
        StateColumn,
    };

    // Rows anew from the imported tracks and the links as they stand.
    void refresh();

private:
    QStringList chosenKeys() const;
    // The zone of the one chosen track, when it has one.
    QString chosenZone() const;
    void updateButtons();
    void act(const std::function<DateChangeResult()> &change);

    AppController &m_controller;
    FoldersOnShow m_foldersOnShow;
    ChosenPics m_chosenPics;
    QTreeWidget *m_list;
    QPushButton *m_link, *m_unlink, *m_useZone;
};

} // namespace orv

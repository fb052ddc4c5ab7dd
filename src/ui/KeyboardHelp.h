#pragma once

#include <QDialog>

class QMenuBar;

namespace orv {

// Help > Keyboard Shortcuts (F1): every key of the window in one list, the commands' keys read
// from the menus as they stand (so the list is never out of date), then the keys of the
// timeline, which no menu shows.
class KeyboardHelp : public QDialog
{
    Q_OBJECT
public:
    KeyboardHelp(const QMenuBar &menus, QWidget *parent = nullptr);
};

} // namespace orv

// The floor of the desktop benchmark: the least a Qt program showing a tray icon with a menu can
// cost. Quennet's start and idle memory are measured against it.

#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QPixmap picture(32, 32);
    picture.fill(Qt::transparent);
    QPainter(&picture).fillRect(4, 4, 24, 24, QColor(0x22, 0x78, 0x6e));

    QMenu menu;
    menu.addAction(QStringLiteral("Quit"), &app, &QApplication::quit);

    QSystemTrayIcon icon { QIcon(picture) };
    icon.setToolTip(QStringLiteral("Floor"));
    icon.setContextMenu(&menu);
    icon.show();
    return QApplication::exec();
}

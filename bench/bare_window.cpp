// The yardstick: the least that a Qt window with a picture can be. Shows a 64 x 64 pixmap in a window of the
// size that the viewer takes at a first start.
#include <QApplication>
#include <QLabel>
#include <QPixmap>
#include <QScreen>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QPixmap picture(64, 64);
    picture.fill(QColor(255, 0, 255));
    QLabel label;
    label.setAlignment(Qt::AlignCenter);
    label.setPixmap(picture);
    const QSize screen = label.screen()->size();
    label.resize(screen * 7 / 8);
    label.move(screen.width() / 16, screen.height() / 16);
    label.show();
    return application.exec();
}

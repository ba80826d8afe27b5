// A program that offers a text and a picture by the clipboard at once. clipboard_source TEXT PICTURE
#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QMimeData>
#include <QWidget>

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    auto* const offer = new QMimeData;
    offer->setText(arguments.value(1));
    offer->setImageData(QImage(arguments.value(2)));
    QGuiApplication::clipboard()->setMimeData(offer);
    QWidget window; // tells that it is there
    window.setWindowTitle(QStringLiteral("Clipboard source"));
    window.setGeometry(20, 40, 160, 60);
    window.show();
    return QApplication::exec();
}

// A window that stands for a file manager: what is dragged out of it are the files and folders that it was
// started with. drag_source PATH...
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace {

class DragSource : public QWidget
{
  public:
    explicit DragSource(const QStringList& paths)
    {
        for (const QString& path : paths)
            m_urls.append(QUrl::fromLocalFile(path));
        setWindowTitle(QStringLiteral("Files to drag"));
        setGeometry(20, 40, 160, 120);
    }

  protected:
    void mousePressEvent(QMouseEvent*) override {} // taken, so that the moves come here
    void mouseMoveEvent(QMouseEvent*) override
    {
        auto* const drag = new QDrag(this);
        auto* const content = new QMimeData;
        content->setUrls(m_urls);
        drag->setMimeData(content);
        drag->exec(Qt::CopyAction);
    }

  private:
    QList<QUrl> m_urls;
};

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    DragSource source(QCoreApplication::arguments().mid(1));
    source.show();
    return QApplication::exec();
}

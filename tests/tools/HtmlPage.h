// A page of help taken apart: its elements in order, each with its attributes and all of its text.
#pragma once

#include <QFile>
#include <QHash>
#include <QStringList>
#include <QXmlStreamReader>

#include <vector>

namespace quorvia::test {

struct Element
{
    QString name;
    QHash<QString, QString> attributes;
    QString text;    ///< of it and all in it, blanks made one
    int parent = -1; ///< its place in the page; -1 for none

    QString attribute(const char* which) const { return attributes.value(QLatin1String(which)); }
};

class HtmlPage
{
  public:
    explicit HtmlPage(const QString& path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            error = path + QStringLiteral(" cannot be read");
            return;
        }
        source = QString::fromUtf8(file.readAll());
        read();
    }

    /// The elements of that name, and of that class unless it is null.
    std::vector<const Element*> all(const char* name, const char* ofClass = nullptr) const
    {
        std::vector<const Element*> found;
        for (const Element& each : elements) {
            if (each.name == QLatin1String(name) &&
                (!ofClass || each.attribute("class").split(u' ').contains(QLatin1String(ofClass))))
                found.push_back(&each);
        }
        return found;
    }
    /// Whether `element` stands in one of that name.
    bool isWithin(const Element& element, const char* name) const
    {
        for (int at = element.parent; at >= 0; at = elements[std::size_t(at)].parent) {
            if (elements[std::size_t(at)].name == QLatin1String(name))
                return true;
        }
        return false;
    }
    /// The elements of that name in `element`.
    std::vector<const Element*> within(const Element& element, const char* name) const
    {
        std::vector<const Element*> found;
        for (const Element* const each : all(name)) {
            for (int at = each->parent; at >= 0; at = elements[std::size_t(at)].parent) {
                if (&elements[std::size_t(at)] == &element)
                    found.push_back(each);
            }
        }
        return found;
    }

    QString source;
    QString error; ///< why it is no page; empty when all is well
    std::vector<Element> elements;

  private:
    void read()
    {
        QXmlStreamReader reader(source);
        std::vector<int> open;
        while (!reader.atEnd()) {
            reader.readNext();
            if (reader.isStartElement()) {
                Element element{reader.name().toString(), {}, {}, open.empty() ? -1 : open.back()};
                for (const QXmlStreamAttribute& each : reader.attributes())
                    element.attributes.insert(each.name().toString(), each.value().toString());
                open.push_back(int(elements.size()));
                elements.push_back(element);
            } else if (reader.isEndElement()) {
                open.pop_back();
            } else if (reader.isCharacters()) {
                for (const int at : open)
                    elements[std::size_t(at)].text += reader.text();
            }
        }
        for (Element& each : elements)
            each.text = each.text.simplified();
        if (reader.hasError())
            error = reader.errorString() + QStringLiteral(" in line ") + QString::number(reader.lineNumber());
    }
};

} // namespace quorvia::test

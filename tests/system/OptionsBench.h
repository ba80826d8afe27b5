// The preferences on the bench: a fresh home, and sinks that write down what they are asked for.
#pragma once

#include "app/SettingsHome.h"
#include "platform/Dialogs.h"
#include "system/frmImageViewOptions.h"

#include <QPointer>
#include <QStringList>
#include <QTest>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quorvia::test {

class OptionsBench
{
  public:
    using Told = std::function<void(const system::ThumbnailStatistics&)>;

    /// Makes the window anew, over what is stored by then.
    system::frmImageViewOptions& open(QWidget* owner = nullptr)
    {
        window = std::make_unique<system::frmImageViewOptions>(sinks(), owner);
        return *window;
    }
    system::frmImageViewOptions& show()
    {
        open().show();
        window->activateWindow();
        if (!QTest::qWaitForWindowActive(window.get()))
            qFatal("The window does not become active");
        return *window;
    }

    template <class Kind = QWidget>
    Kind& part(const char* name) const
    {
        auto* const found = window->findChild<Kind*>(QLatin1String(name));
        Q_ASSERT(found);
        return *found;
    }

    system::OptionSinks sinks()
    {
        return {.backColor = [this] { return backColor; },
                .setBackColor =
                    [this](const QColor& color) {
                        backColor = color;
                        done.append(QStringLiteral("color ") + color.name());
                    },
                .applyAssociations = [this] { done.append(QStringLiteral("associate")); },
                .associateOther =
                    [this](const QString& program) { done.append(QStringLiteral("other ") + program); },
                .countThumbnails =
                    [this](Told told) {
                        done.append(QStringLiteral("count"));
                        counts.push_back(std::move(told));
                    },
                .clearThumbnails = [this](QWidget*) { done.append(QStringLiteral("clear")); },
                .endProcess = [this] { done.append(QStringLiteral("end")); }};
    }

    SettingsHome home;
    QColor backColor{0x10, 0x20, 0x30};
    QStringList done;         ///< by the sinks
    std::vector<Told> counts; ///< that were asked for
    std::vector<platform::MessageBox> boxes;
    platform::BoxAnswer answer = platform::BoxAnswer::Yes;
    std::function<void()> whileAsked = [] {};
    std::unique_ptr<system::frmImageViewOptions> window;

  private:
    platform::MessageBoxAnswerer m_answerer{[this](const platform::MessageBox& box) {
        boxes.push_back(box);
        whileAsked();
        return answer;
    }};
};

} // namespace quorvia::test

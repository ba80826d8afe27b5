// The one seam through which message boxes reach the screen, so that a test can answer the next one.
#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace quorvia::platform {

enum class BoxKind { Plain, Information, Question };
enum class BoxButtons { Ok, YesNo, YesNoCancel };
enum class BoxAnswer { Ok, Yes, No, Cancel };

struct MessageBox
{
    BoxKind kind = BoxKind::Plain;
    BoxButtons buttons = BoxButtons::Ok;
    QString title = {};
    QString text = {};
};

/// Shows `box` modally over `owner` (may be null) and waits for the answer. Closing the box answers Cancel,
/// No or Ok, whichever of them it offers.
BoxAnswer showMessage(QWidget* owner, const MessageBox& box);

/// Takes the place of the screen for message boxes while it lives; for tests. The newest one is asked.
class MessageBoxAnswerer
{
  public:
    explicit MessageBoxAnswerer(std::function<BoxAnswer(const MessageBox&)> answer);
    ~MessageBoxAnswerer();
    MessageBoxAnswerer(const MessageBoxAnswerer&) = delete;
    MessageBoxAnswerer& operator=(const MessageBoxAnswerer&) = delete;
};

} // namespace quorvia::platform

// The dialog that asks for the size of an image. Shows what SizeFields computes, and resamples the owner's
// image when it is applied.
#pragma once

#include "commands/SizeFields.h"

#include <QDialog>

#include <memory>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;

namespace quorvia::engine {
class ImageEngine;
class ImageLoader;
} // namespace quorvia::engine

namespace quorvia::commands {

class frmImageViewSize : public QDialog
{
    Q_OBJECT

  public:
    /// `loader` serves the control that holds the copy of the image.
    explicit frmImageViewSize(std::shared_ptr<engine::ImageLoader> loader, QWidget* parent = nullptr);

    /// Shows the size of the image in `ix1` (all zero without one), waits, and brings it to the size that was
    /// applied. `ix1` may be destroyed while the dialog waits, when that destroys the dialog too.
    void LoadX(engine::ImageEngine& ix1);

  protected:
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;

  private:
    /// The controls of one length.
    struct Row
    {
        QLineEdit* text;
        QComboBox* unit;
    };

    Row makeRow(const char* letter, const QString& length);
    QGroupBox* makeDimensions();
    void connectRow(const Row& row, SizeField& field, void (SizeFields::*take)(const QString&, bool));
    void addKey(const char* key, QWidget* field);
    void Display();
    void drawLock();

    SizeFields m_fields;
    engine::ImageEngine* m_ixOri;
    Row m_width;
    Row m_height;
    QCheckBox* m_Check1;
    QLabel* m_iLock;
    bool m_displaying = false; ///< the texts come from the fields, not from the user
};

/// Shows the dialog over `owner` for the image in `ix1`, which is the owner's, and waits.
void askForSize(QWidget* owner, std::shared_ptr<engine::ImageLoader> loader, engine::ImageEngine& ix1);

} // namespace quorvia::commands

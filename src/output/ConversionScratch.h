// The scratch file of the conversion preview. Two running programs, or two windows, never use the same one.
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace quorvia::output {

/// Holds a place for scratch files while it lives: the folder `folder` itself, or one of its own in there
/// while somebody else holds that. Removes what it made at its end. The kernel gives the place back however
/// the program ends.
class ConversionScratch
{
  public:
    /// `folder` (native path) is made when it is missing, for its owner's eyes alone.
    explicit ConversionScratch(const QString& folder);
    ~ConversionScratch();
    ConversionScratch(const ConversionScratch&) = delete;
    ConversionScratch& operator=(const ConversionScratch&) = delete;

    /// Path of "tempimage." and `extension`. It is removed at the end, or when the next one is asked for.
    QString fileFor(const QString& extension);
    /// Removes the file that was asked for last.
    void remove();

  private:
    void takeOwnFolder();

    QString m_folder;
    int m_lock = -1;
    std::unique_ptr<QTemporaryDir> m_own; ///< inside m_folder, which another one holds
    QString m_file;
};

} // namespace quorvia::output

// The dialog that chooses a file to open.
#pragma once

#include <QFileDialog>
#include <QString>

#include "platform/ports.h"

namespace kelvaron {

/// Makes the toolkit's dialog what `told` asks for. `folderBefore` is where it starts when `told`
/// names no folder that is there; empty for the user's own folder.
void prepareFileDialog(QFileDialog& dialog, const FileDialog& told, const QString& folderBefore);

}  // namespace kelvaron

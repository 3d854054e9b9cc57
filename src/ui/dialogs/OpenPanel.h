#pragma once

#include "core/model/LibraryTab.h"

#include <QList>
#include <QUrl>

#include <functional>

class QWidget;

/// The dialogs by which files and folders are taken in. Thread: main.
namespace OpenPanel {

/// Opens the dialog without blocking: several files and folders may be chosen at once. \param tab the section that will
/// take them (the converter takes Ogg files as well). \param chosen called on confirmation only, with at least one
/// location.
void open(QWidget* parent, LibraryTab tab, std::function<void(const QList<QUrl>&)> chosen);

/// Opens the dialog for a picture. \param chosen called on confirmation only.
void openImage(QWidget* parent, std::function<void(const QUrl&)> chosen);

} // namespace OpenPanel

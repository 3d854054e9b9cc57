#pragma once

#include <QObject>

class QMimeData;
class QWidget;

/// What one section has beyond its header and list, made by its descriptor. Owned by the section's page. Thread: main.
class SectionParts : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Takes the language of the interface over. Called by the page, once at its start too.
    virtual void retranslate() = 0;
    /// The header has become this wide, in pixels.
    virtual void fitHeader(int width) { Q_UNUSED(width) }
    /// What stands between header and list; null for nothing. Owned by the page.
    virtual QWidget* banner() const { return nullptr; }
    /// Whether a picture can be dropped and pasted here.
    virtual bool takesPictures() const { return false; }
    /// Takes the picture of a drop.
    virtual void take(const QMimeData& data) { Q_UNUSED(data) }
    /// Takes the picture of the clipboard.
    virtual void paste() {}
};

#pragma once

// The mind map of a class as a PNG: a horizontal tree with the topic at the left and its main
// branches in colour, joined by curves. The same picture goes into the report mail and the
// message page. Drawn off screen at two pixels a point on white, so the PNG needs no alpha; a
// very large tree is drawn at a smaller scale so the bitmap stays within bounds.
//
// Needs a QGuiApplication for its fonts; callable from any thread, holds no state.

#include "report/MindNode.h"

#include <QByteArray>

#include <optional>

namespace MindMapImage {

// None when the bitmap can't be made or encoded.
std::optional<QByteArray> png(const MindNode &root);

} // namespace MindMapImage

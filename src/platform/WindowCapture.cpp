#include "platform/WindowCapture.h"

WindowCapture::~WindowCapture() = default;

#include "captions/CaptionSource.h"

CaptionSource::~CaptionSource() = default;

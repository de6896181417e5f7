#include "ai/AIProvider.h"

AIProvider::~AIProvider() = default;

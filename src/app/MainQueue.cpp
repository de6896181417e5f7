#include "app/MainQueue.h"

MainQueue::MainQueue() = default;

// Frees the generation: every call still queued finds it gone and is dropped.
MainQueue::~MainQueue() = default;

void MainQueue::expire()
{
    ++generation_->value;
}

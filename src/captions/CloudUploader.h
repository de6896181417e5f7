#pragma once

// The one task that sends a class's speech segments to the cloud recogniser, strictly one at a
// time and in order, and turns each answer into final lines of the transcript, or into the
// trouble the user reads. A failed segment is not sent again: the next segment is the retry.
//
// start() runs it on the network pool until the queue is finished or the transcript is gone; it
// holds the transcript weakly. upload() is one exchange, blocking: the task runs it per segment.

#include "captions/CloudFilter.h"
#include "captions/CloudRequest.h"
#include "captions/CloudTranscript.h"

#include <QDateTime>

#include <memory>
#include <span>

class SegmentQueue;

class CloudUploader final
{
public:
    CloudUploader(CloudRequest request, CloudFilter filter, std::weak_ptr<CloudTranscript> transcript);

    static void start(std::unique_ptr<CloudUploader> uploader, std::shared_ptr<SegmentQueue> queue);

    // Sends one segment, cut at `cut`, and merges the answer or records the failure.
    void upload(std::span<const qint16> samples, const QDateTime &cut);

    // The trouble worded for the user when no answer came, and for an answer of this status that
    // isn't a transcription.
    static QString cannotConnect();
    static QString failure(int status, bool viaRelay);

private:
    void run(SegmentQueue &queue);

    const CloudRequest request_;
    CloudFilter filter_;
    const std::weak_ptr<CloudTranscript> transcript_;
};

// SPDX-License-Identifier: MIT
// Where sessions begin and end, and what the writer reports around that.
#include <algorithm>
#include <iterator>

#include "calllog/log_text.h"
#include "model/session_model.h"

namespace vextrel::program {
namespace {

template <FormatText text>
std::size_t IndexOfReport(KnownFormat<text> /*format*/) {
  return static_cast<std::size_t>(
      std::find(kReports.begin(), kReports.end(), KnownFormat<text>::Text()) - kReports.begin());
}

struct KnownReports {
  std::size_t loadingConfigFile = IndexOfReport(report::kLoadingConfigFile);
  std::size_t loadingProducer = IndexOfReport(report::kLoadingProducer);
  std::size_t producerVersion = IndexOfReport(report::kProducerFileVersion);
  std::size_t notExported = IndexOfReport(report::kNotExported);
  std::size_t newerNotExported = IndexOfReport(report::kNewerNotExported);
  std::size_t eventsLeft[5] = {
      IndexOfReport(report::kEventLeftOnTransportLayer),
      IndexOfReport(report::kEventLeftOnInterface), IndexOfReport(report::kEventLeftOnDevice),
      IndexOfReport(report::kEventLeftOnDataStream), IndexOfReport(report::kEventLeftOnBuffer)};
};

const KnownReports& Known() {
  static const KnownReports known;
  return known;
}

}  // namespace

Priority PriorityOfReport(std::size_t report) noexcept {
  const KnownReports& known = Known();
  if (report == known.loadingConfigFile || report == known.loadingProducer ||
      report == known.producerVersion || report == known.newerNotExported) {
    return Priority::Info;
  }
  const bool isWarning = std::find(std::begin(known.eventsLeft), std::end(known.eventsLeft),
                                   report) != std::end(known.eventsLeft);
  return isWarning ? Priority::Warn : Priority::Error;
}

bool IsNotExported(std::size_t report) noexcept {
  return report == Known().notExported;
}

void SessionModel::StartSession(const LogPlace& begin) {
  if (observer_ != nullptr) {
    observer_->BeforeSessionEnds();
  }
  for (Stream& stream : streams_) {
    if (stream.IsRunning()) {
      stream.Stop(now_);
    }
  }
  runningStreams_ = 0;
  handles_.EndAll();
  timings_.Abandon();
  sessions_.emplace_back().begin = begin;
  sessionHasCalls_ = false;
}

void SessionModel::TakeReport(const Record& record, const Message& message) {
  const KnownReports& known = Known();
  if (message.line == known.notExported) {
    ++notExported_;
    return;
  }
  const Priority priority = PriorityOfReport(message.line);
  reports_ += priority == Priority::Info ? 0 : 1;
  if (message.line == known.loadingProducer || message.line == known.loadingConfigFile) {
    TakeLoading(record, message);
  } else if (message.line == known.producerVersion) {
    (loading_.has_value() ? *loading_ : sessions_.back()).producerVersion = message.values[0].text;
  }
  context_.handles.fill(kNoHandle);
  context_.misplaced.fill(kNoHandle);
  for (std::size_t i = 0; i < message.shape->places.size(); ++i) {
    if (message.shape->places[i].meaning == Meaning::Handle) {
      context_.handles[i] = handles_.Find(HandleKind::Any, message.values[i].number);
    }
  }
}

// Another process begins like this, and so does a second GCInitLib, which is refused then: the
// thread tells them apart mostly, and otherwise the call's result.
void SessionModel::TakeLoading(const Record& record, const Message& message) {
  const bool isKnownThread = context_.thread != 0 && CurrentThread().session == sessions_.size();
  if (sessionHasCalls_ && !loading_.has_value()) {
    if (isKnownThread && !sessions_.back().wasClosed) {
      loading_.emplace().begin = record.place;
    } else {
      StartSession(record.place);
    }
  }
  if (message.line == Known().loadingProducer) {
    (loading_.has_value() ? *loading_ : sessions_.back()).producer = message.values[0].text;
  }
}

void SessionModel::EndLoading(const Message& initialization) {
  if (loading_.has_value() && initialization.result != GC_ERR_RESOURCE_IN_USE) {
    StartSession(loading_->begin);
    sessions_.back() = *loading_;
  }
  loading_.reset();
}

void SessionModel::OnInitLib(const Record& record, const Message& /*message*/) {
  if (sessions_.back().wasInitialized) {
    StartSession(record.place);
  }
  sessions_.back().wasInitialized = true;
}

void SessionModel::OnCloseLib(const Record& /*record*/, const Message& /*message*/) {
  sessions_.back().wasClosed = true;
  handles_.EndAll();
  for (Stream& stream : streams_) {
    if (stream.IsRunning()) {
      stream.Stop(now_);
    }
  }
  runningStreams_ = 0;
}

void SessionModel::Finish() {
  if (loading_.has_value()) {
    StartSession(loading_->begin);
    sessions_.back() = *loading_;
  }
  if (observer_ != nullptr) {
    observer_->BeforeSessionEnds();
  }
  for (Stream& stream : streams_) {
    if (stream.IsRunning()) {
      stream.Stop(now_);
    }
  }
  runningStreams_ = 0;
  timings_.Abandon();
}

}  // namespace vextrel::program

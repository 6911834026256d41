// SPDX-License-Identifier: MIT
// What opens, announces and registers handles, and what ends them.
#include "model/message_values.h"
#include "model/session_model.h"

namespace vextrel::program {

void SessionModel::NoteOpening(HandleId id, const Record& record) {
  Handle& handle = handles_.At(id);
  handle.openedAt = record.place;
  handle.openedBy = context_.thread;
  handle.session = static_cast<std::uint32_t>(sessions_.size());
}

void SessionModel::NoteClosing(HandleId id, const Record& record) {
  Handle& handle = handles_.At(id);
  handle.closedAt = record.place;
  handle.closedBy = context_.thread;
}

void SessionModel::EndHandle(HandleId id) {
  handles_.End(id);
  for (Stream& stream : streams_) {
    if (stream.IsRunning() && !handles_.At(stream.Id()).isOpen) {
      stream.Stop(now_);
      --runningStreams_;
    }
  }
}

void SessionModel::OnOpen(const Record& record, const Message& message, HandleKind kind,
                          Label parentLabel, Label idLabel, Label label) {
  const std::size_t place = message.shape->Find(label);
  if (place == kNoPlace || message.values[place].number == 0) {
    return;
  }
  const HandleId id =
      handles_.Open(kind, message.values[place].number, HandleIn(message, parentLabel));
  handles_.At(id).id = TextIn(message, idLabel);
  context_.handles[place] = id;
  NoteOpening(id, record);
}

void SessionModel::OnTLOpen(const Record& record, const Message& message) {
  OnOpen(record, message, HandleKind::TransportLayer, "", "", "pHandle");
}

void SessionModel::OnOpenInterface(const Record& record, const Message& message) {
  // The label "hInterface" is the output's here.
  OnOpen(record, message, HandleKind::Interface, "hTL", "sInterfaceName", "hInterface");
}

void SessionModel::OnOpenDevice(const Record& record, const Message& message) {
  const std::size_t place = message.shape->Find("hDev");
  if (place == kNoPlace || message.values[place].number == 0) {
    return;
  }
  const HandleId id = handles_.OpenHalf(static_cast<std::uint32_t>(message.values[place].number),
                                        HandleIn(message, "hInterface"));
  handles_.At(id).id = TextIn(message, "sDevName");
  context_.handles[place] = id;
  NoteOpening(id, record);
}

void SessionModel::OnGetPort(const Record& record, const Message& message) {
  const std::size_t place = message.shape->Find("pPort");
  const HandleId device = HandleIn(message, "hDev");
  if (place == kNoPlace || message.values[place].number == 0) {
    return;
  }
  // Asking again opens nothing.
  const HandleId known = handles_.Find(HandleKind::Port, message.values[place].number);
  if (known != kNoHandle && handles_.At(known).isOpen && handles_.At(known).parent == device) {
    context_.handles[place] = known;
    return;
  }
  OnOpen(record, message, HandleKind::Port, "hDev", "", "pPort");
}

void SessionModel::OnOpenDataStream(const Record& record, const Message& message) {
  OnOpen(record, message, HandleKind::DataStream, "hDev", "pID", "hDS");
  const HandleId id = HandleIn(message, "hDS");
  if (id != kNoHandle) {
    static_cast<void>(StreamOf(id));
  }
}

void SessionModel::OnAnnounce(const Record& record, const Message& message) {
  OnOpen(record, message, HandleKind::Buffer, "hDS", "", "hBuffer");
  const HandleId buffer = HandleIn(message, "hBuffer");
  const HandleId dataStream = HandleIn(message, "hDS");
  if (buffer != kNoHandle) {
    handles_.At(buffer).memory = PointerIn(message, "pBuffer");
    handles_.At(buffer).userPointer = PointerIn(message, "pPrivate");
  }
  if (buffer != kNoHandle && dataStream != kNoHandle) {
    handles_.At(buffer).state = BufferState::Unqueued;
    StreamOf(dataStream).Announce();
  }
}

void SessionModel::OnRegister(const Record& record, const Message& message) {
  OnOpen(record, message, HandleKind::Event, "hEventSrc", "iEvent", "hE");
  const HandleId event = HandleIn(message, "hE");
  if (event != kNoHandle) {
    std::string& type = handles_.At(event).id;
    if (type.starts_with("EVENT_")) {
      type.erase(0, std::string_view("EVENT_").size());
    }
  }
}

void SessionModel::OnUnregister(const Record& record, const Message& message) {
  const HandleId source = HandleIn(message, "hEventSrc");
  std::string_view type = TextIn(message, "iEvent");
  if (type.starts_with("EVENT_")) {
    type.remove_prefix(std::string_view("EVENT_").size());
  }
  for (const HandleId id : handles_.OpenOnes()) {
    const Handle& handle = handles_.At(id);
    if (handle.kind == HandleKind::Event && handle.parent == source && handle.id == type) {
      NoteClosing(id, record);
      EndHandle(id);
      return;
    }
  }
}

void SessionModel::OnRevoke(const Record& record, const Message& message) {
  const HandleId buffer = HandleIn(message, "hBuffer");
  if (buffer != kNoHandle) {
    SetState(buffer, BufferState::Unqueued);
    NoteClosing(buffer, record);
    EndHandle(buffer);
  }
}

void SessionModel::OnClose(const Record& record, const Message& /*message*/) {
  const HandleId id = context_.handles[0];
  if (id != kNoHandle) {
    NoteClosing(id, record);
    EndHandle(id);
  }
}

void SessionModel::OnTLInfo(const Record& /*record*/, const Message& message) {
  const HandleId transportLayer = HandleIn(message, "hTL");
  const std::string_view text = TextIn(message, "Buffer");
  if (transportLayer != kNoHandle && TextIn(message, "iInfoCmd") == "TL_INFO_ID" &&
      text.size() >= 2 && text.front() == '\'') {
    handles_.At(transportLayer).id = text.substr(1, text.size() - 2);
  }
}

}  // namespace vextrel::program

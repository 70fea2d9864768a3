#include "calls/BQLColloqEvent.h"

#include <utility>

BQLColloqEvent::BQLColloqEvent(BQLColloqEventType eventType, int32_t eventCallId)
    : type(eventType), callId(eventCallId), vexilState(static_cast<eCallState>(0)) {}

BQLColloqEvent::BQLColloqEvent(int eventCallId, eCallState state, std::string eventName,
                               std::string eventValue, std::string eventInfo)
    : type(VEXIL_CALL_EVENT),
      callId(eventCallId),
      vexilState(state),
      name(std::move(eventName)),
      value(std::move(eventValue)),
      info(std::move(eventInfo)) {}

BQLColloqEvent::BQLColloqEvent(int eventCallId, eCallState state, std::string eventInfo)
    : type(VEXIL_CALL_EVENT), callId(eventCallId), vexilState(state), info(std::move(eventInfo)) {}

BQLColloqEvent::BQLColloqEvent(BQLColloqEventType eventType, std::string eventName, std::string eventValue)
    : type(eventType),
      callId(0),
      vexilState(static_cast<eCallState>(0)),
      name(std::move(eventName)),
      value(std::move(eventValue)) {}

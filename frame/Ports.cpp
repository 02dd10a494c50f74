#include "frame/Ports.h"

namespace solvane {

std::unique_ptr<exec::PublicPort> port;
std::unique_ptr<exec::MsgPort> UserPort;
std::unique_ptr<exec::MsgPort> ScrNotPort;
std::unique_ptr<exec::Timer> SAK_TimerMP;

} // namespace solvane

// Sends the state of the simulation to programs that connect on this machine.
#pragma once

#include <vyrSDK/Simulation.h>

#include <string>
#include <vector>

namespace vyrOSG {

/// A TCP endpoint on the loopback interface that streams one JSON object a line. It never waits: a reader that is too
/// slow is cut off.
class RemoteDebugger {
public:
  RemoteDebugger() = default;
  ~RemoteDebugger();
  RemoteDebugger(const RemoteDebugger&) = delete;
  RemoteDebugger& operator=(const RemoteDebugger&) = delete;

  /// Begins to listen. @param port 0 takes any free port. False and one error line on failure.
  bool listen(int port);
  /// The port, 0 while not listening.
  int getPort() const { return m_port; }

  /// Takes in new readers and sends all of them the state.
  void update(const vyrSDK::Simulation& simulation);
  void close();

  /// The line that is sent, without its end.
  static std::string makeLine(const vyrSDK::Simulation& simulation);

private:
  struct Reader {
    int socket;
    std::string pending;
  };

  void accept();
  static bool send(Reader& reader);

  int m_socket = -1;
  int m_port = 0;
  std::vector<Reader> m_readers;
};

} // namespace vyrOSG

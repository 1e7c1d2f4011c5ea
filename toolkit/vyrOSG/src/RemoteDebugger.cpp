// Serves the loopback interface without ever waiting for it.
#include "RemoteDebugger.h"

#include <vyr/Notify.h>

#include <nlohmann/json.hpp>

#include <arpa/inet.h>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vyrOSG {

namespace {

/// A reader that has fallen this far behind is cut off (bytes).
constexpr std::size_t kMostPending = 8u << 20;

template <class Vector>
nlohmann::json toJson(const Vector& vector, std::size_t size) {
  nlohmann::json array = nlohmann::json::array();
  for (std::size_t i = 0; i < size; ++i)
    array.push_back(vector[i]);
  return array;
}

} // namespace

RemoteDebugger::~RemoteDebugger() {
  close();
}

bool RemoteDebugger::listen(int port) {
  close();
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<uint16_t>(port));
  socklen_t size = sizeof(address);
  const int on = 1;
  const bool fits = port >= 0 && port <= 65535;
  m_socket = fits ? socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0) : -1;
  if (m_socket >= 0)
    setsockopt(m_socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
  if (m_socket < 0 || bind(m_socket, reinterpret_cast<sockaddr*>(&address), size) != 0 || ::listen(m_socket, 4) != 0 ||
      getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "remote debugger: cannot listen on port " << port << ": "
                                  << (fits ? std::strerror(errno) : "there is no such port");
    close();
    return false;
  }
  m_port = ntohs(address.sin_port);
  VYR_NOTIFY(vyr::NOTIFY_INFO) << "remote debugger: listening on 127.0.0.1:" << m_port;
  return true;
}

void RemoteDebugger::close() {
  for (const Reader& reader : m_readers)
    ::close(reader.socket);
  m_readers.clear();
  if (m_socket >= 0)
    ::close(m_socket);
  m_socket = -1;
  m_port = 0;
}

void RemoteDebugger::accept() {
  for (;;) {
    const int reader = ::accept4(m_socket, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (reader < 0)
      return;
    m_readers.push_back({reader, ""});
  }
}

bool RemoteDebugger::send(Reader& reader) {
  while (!reader.pending.empty()) {
    const ssize_t sent = ::send(reader.socket, reader.pending.data(), reader.pending.size(), MSG_NOSIGNAL);
    if (sent <= 0)
      return sent < 0 && (errno == EAGAIN || errno == EWOULDBLOCK) && reader.pending.size() < kMostPending;
    reader.pending.erase(0, static_cast<std::size_t>(sent));
  }
  return true;
}

void RemoteDebugger::update(const vyrSDK::Simulation& simulation) {
  if (m_socket < 0)
    return;
  accept();
  if (m_readers.empty())
    return;
  const std::string line = makeLine(simulation) + "\n";
  std::size_t kept = 0;
  for (Reader& reader : m_readers) {
    reader.pending += line;
    if (send(reader))
      m_readers[kept++] = reader;
    else
      ::close(reader.socket);
  }
  m_readers.resize(kept);
}

std::string RemoteDebugger::makeLine(const vyrSDK::Simulation& simulation) {
  nlohmann::json state;
  state["time"] = simulation.getTime();
  state["step"] = simulation.getTimeStamp().steps();
  state["timeStep"] = simulation.getTimeStep();
  state["bodies"] = nlohmann::json::array();
  for (const vyr::ref_ptr<vyr::RigidBody>& body : simulation.getRigidBodies()) {
    nlohmann::json entry;
    entry["name"] = static_cast<const std::string&>(body->getName());
    entry["position"] = toJson(body->getPosition(), 3);
    entry["rotation"] = toJson(body->getRotation(), 4);
    entry["velocity"] = toJson(body->getVelocity(), 3);
    entry["angularVelocity"] = toJson(body->getAngularVelocity(), 3);
    state["bodies"].push_back(entry);
  }
  state["contacts"] = nlohmann::json::array();
  for (const vyrSDK::Contact& contact : simulation.getContacts()) {
    nlohmann::json entry;
    entry["point"] = toJson(contact.point, 3);
    entry["normal"] = toJson(contact.normal, 3);
    entry["depth"] = contact.depth;
    entry["normalForce"] = contact.normalForce;
    state["contacts"].push_back(entry);
  }
  // Names are whatever scripts gave; bytes that are no text must not end the program.
  return state.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace vyrOSG

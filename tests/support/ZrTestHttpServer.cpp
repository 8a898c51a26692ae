#include "ZrTestHttpServer.h"

#include <arpa/inet.h>
#include <csignal>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace ZrTest {

namespace {

// Reads the first line the server prints (its port), giving up after ten seconds.
int readPort(int fd) {
  std::string line;
  char c = 0;
  while (line.size() < 16) {
    pollfd ready{fd, POLLIN, 0};
    if (::poll(&ready, 1, 10000) <= 0) return 0;
    if (::read(fd, &c, 1) != 1 || c == '\n') break;
    line += c;
  }
  return std::atoi(line.c_str());
}

}  // namespace

HttpServer::HttpServer(const std::string& directory) : m_thePid(-1), m_theStdin(-1), m_thePort(0) {
  int toServer[2];
  int fromServer[2];
  if (::pipe(toServer) != 0) return;
  if (::pipe(fromServer) != 0) {
    ::close(toServer[0]);
    ::close(toServer[1]);
    return;
  }
  const std::string script = std::string(ZR_TEST_DATA_DIR) + "/zr_http_test_server.py";
  m_thePid = ::fork();
  if (m_thePid == 0) {
    ::dup2(toServer[0], 0);
    ::dup2(fromServer[1], 1);
    ::close(toServer[1]);
    ::close(fromServer[0]);
    ::execlp("python3", "python3", script.c_str(), directory.c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
  ::close(toServer[0]);
  ::close(fromServer[1]);
  m_theStdin = toServer[1];
  if (m_thePid > 0) m_thePort = readPort(fromServer[0]);
  ::close(fromServer[0]);
}

HttpServer::~HttpServer() {
  if (m_theStdin >= 0) ::close(m_theStdin);
  if (m_thePid > 0) {
    ::kill(m_thePid, SIGTERM);
    ::waitpid(m_thePid, nullptr, 0);
  }
}

std::string HttpServer::url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(m_thePort) + "/" + path;
}

int unusedPort() {
  int fd = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = 0;
  socklen_t length = sizeof(address);
  int port = 0;
  if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0 &&
      ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
    port = ntohs(address.sin_port);
  ::close(fd);
  return port;
}

}  // namespace ZrTest

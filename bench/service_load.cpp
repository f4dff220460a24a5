// Clients of the web service, many at a time, for scripts/bench-service. Each asks for what changed since a stamp,
// takes the whole reply and, now and then, checks its frame. Prints one line of figures; exit status 1 when a reply was
// wrong.
//   service_load PORT changes SECONDS CLIENTS (close|keep) STAMP...   requests a second, at any of the stamps
//   service_load PORT whole SECONDS CLIENTS STAMP                     time to the first byte of the reply
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <random>
#include <stdexcept>
#include <thread>

#include "base/numbers.h"
#include "sitedb/codec/cCRC32.h"

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
using tb::Text;

constexpr int Hosts = 10;
// Every so many replies the frame is checked; it costs more than the request.
constexpr int CheckInterval = 200;

// Checks a frame that comes in pieces: its checksum, "G", what the checksum is of.
class FrameCheck {
public:
    void Take(tb::TextView piece) {
        if (!m_HasHead) {
            const size_t end = piece.find('G');
            m_Head += piece.substr(0, end);
            m_HasHead = end != tb::TextView::npos;
            piece.remove_prefix(m_HasHead ? end + 1 : piece.size());
        }
        m_Sum = tb::cCRC32().GetStringCrc32(piece, m_Sum);
    }
    bool IsIntact() const { return m_HasHead && m_Head == tb::ToHex(static_cast<std::uint32_t>(m_Sum)); }

private:
    Text m_Head;
    bool m_HasHead = false;
    std::int32_t m_Sum = 0;
};

class Client {
public:
    Client(int port, int host) : m_Port(port), m_Host(host), m_Buffer(262144) {}
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() { Close(); }

    struct Answer {
        double FirstByte = 0;
        double Whole = 0;
        size_t Size = 0;
    };

    // One exchange, its frame checked on demand; the frame is not kept.
    Answer Ask(const Text& stamp, bool keep, bool check) {
        const auto begin = Clock::now();
        if (m_Socket < 0) Connect();
        const Text form = "Key=bench&TS=" + stamp;
        const Text request =
            "POST /MalDB.aspx HTTP/1.1\r\nHost: bench\r\n" + Text(keep ? "" : "Connection: close\r\n") +
            "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " + std::to_string(form.size()) +
            "\r\n\r\n" + form;
        if (::send(m_Socket, request.data(), request.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(request.size())) {
            throw std::runtime_error("cannot send");
        }
        Answer answer;
        Text reply(Receive());
        answer.FirstByte = Milliseconds(Clock::now() - begin).count();
        while (reply.find("\r\n\r\n") == Text::npos) reply += Receive();
        const size_t headSize = reply.find("\r\n\r\n") + 4;
        const Text head = reply.substr(0, headSize);
        if (head.rfind("HTTP/1.1 200 ", 0) != 0) throw std::runtime_error("answered " + head.substr(0, 40));
        answer.Size = std::stoul(head.substr(head.find("Content-Length: ") + 16));
        FrameCheck frame;
        if (check) frame.Take(tb::TextView(reply).substr(headSize));
        for (size_t received = reply.size() - headSize; received < answer.Size;) {
            const tb::TextView piece = Receive();
            received += piece.size();
            if (check) frame.Take(piece);
        }
        if (!keep || head.find("Connection: close") != Text::npos) Close();
        answer.Whole = Milliseconds(Clock::now() - begin).count();
        if (check && !frame.IsIntact()) throw std::runtime_error("a frame is broken");
        return answer;
    }

private:
    void Connect() {
        m_Socket = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(m_Port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK + static_cast<std::uint32_t>(m_Host % Hosts));
        const int on = 1;
        ::setsockopt(m_Socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        if (::connect(m_Socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            throw std::runtime_error(Text("cannot connect: ") + std::strerror(errno));
        }
    }
    tb::TextView Receive() {
        const ssize_t count = ::recv(m_Socket, m_Buffer.data(), m_Buffer.size(), 0);
        if (count <= 0) throw std::runtime_error("the reply ended early");
        return {m_Buffer.data(), static_cast<size_t>(count)};
    }
    void Close() {
        if (m_Socket >= 0) ::close(m_Socket);
        m_Socket = -1;
    }

    const int m_Port;
    const int m_Host;
    int m_Socket = -1;
    std::vector<char> m_Buffer;
};

struct Load {
    int Port = 0;
    bool IsWhole = false;
    double Seconds = 0;
    int Clients = 0;
    bool Keep = false;
    std::vector<Text> Stamps;
};

// What one client measures until the time is over, at least one answer.
std::vector<Client::Answer> RunClient(const Load& load, int number, std::atomic<bool>& failed) {
    std::vector<Client::Answer> answers;
    try {
        std::mt19937 random(static_cast<unsigned>(number));
        Client client(load.Port, number);
        const auto end = Clock::now() + std::chrono::duration<double>(load.Seconds);
        do {
            const bool check = load.IsWhole ? number == 0 : answers.size() % CheckInterval == 0;
            answers.push_back(client.Ask(load.Stamps[random() % load.Stamps.size()], load.Keep, check));
        } while (!failed && Clock::now() < end);
    } catch (const std::exception& error) {
        if (!failed.exchange(true)) std::fprintf(stderr, "service_load: %s\n", error.what());
    }
    return answers;
}

double Percentile(std::vector<double> values, double share) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, static_cast<size_t>(share * static_cast<double>(values.size())))];
}

int Run(const Load& load) {
    std::atomic<bool> failed = false;
    std::vector<std::vector<Client::Answer>> measured(static_cast<size_t>(load.Clients));
    std::vector<std::thread> clients;
    const auto begin = Clock::now();
    for (int number = 0; number < load.Clients; ++number) {
        clients.emplace_back([&, number] { measured[static_cast<size_t>(number)] = RunClient(load, number, failed); });
    }
    for (std::thread& client : clients) client.join();
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    std::vector<double> firstBytes;
    std::vector<double> wholes;
    size_t bytes = 0;
    for (const auto& answers : measured) {
        for (const Client::Answer& answer : answers) {
            firstBytes.push_back(answer.FirstByte);
            wholes.push_back(answer.Whole);
            bytes += answer.Size;
        }
    }
    std::printf(
        "requests=%zu per_second=%.0f bytes_each=%zu first_byte_p50_ms=%.2f first_byte_p99_ms=%.2f "
        "first_byte_max_ms=%.2f whole_p50_ms=%.2f whole_p99_ms=%.2f\n",
        wholes.size(), static_cast<double>(wholes.size()) / seconds, bytes / std::max<size_t>(wholes.size(), 1),
        Percentile(firstBytes, 0.5), Percentile(firstBytes, 0.99), Percentile(firstBytes, 1), Percentile(wholes, 0.5),
        Percentile(wholes, 0.99));
    return failed ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<Text> words(argv + 1, argv + argc);
    const bool isWhole = words.size() == 5 && words[1] == "whole";
    if (!isWhole && (words.size() < 6 || words[1] != "changes")) {
        std::fprintf(stderr,
                     "usage: service_load PORT (changes SECONDS CLIENTS (close|keep) STAMP... | "
                     "whole SECONDS CLIENTS STAMP)\n");
        return 2;
    }
    Load load{
        std::stoi(words[0]), isWhole, std::stod(words[2]), std::stoi(words[3]), !isWhole && words[4] == "keep", {}};
    load.Stamps.assign(words.begin() + (isWhole ? 4 : 5), words.end());
    return Run(load);
}

// gRPC: a synchronous unary call of bytes, as generated code makes and serves it, over a local socket.
#include "others/exchange.h"
#include "require.h"

#include <grpcpp/grpcpp.h>
#include <grpcpp/impl/client_unary_call.h>
#include <grpcpp/impl/rpc_method.h>
#include <grpcpp/impl/rpc_service_method.h>
#include <grpcpp/support/method_handler.h>

namespace bench {
namespace {

using grpc::ByteBuffer;
using grpc::Slice;
using grpc::Status;
using grpc::internal::RpcMethod;

constexpr char kAddress[] = "unix:vx63-bench.socket";
constexpr char kMethod[] = "/vx63.Service/Exchange";

void check(const Status& status, const char* what)
{
    if (!status.ok())
        require(false, what, status.error_message().c_str());
}

Slice bytesOf(const ByteBuffer& buffer)
{
    Slice bytes;
    check(buffer.DumpToSingleSlice(&bytes), "DumpToSingleSlice");
    return bytes;
}

class Service : public grpc::Service {
public:
    Service()
    {
        using Handler = grpc::internal::RpcMethodHandler<Service, ByteBuffer, ByteBuffer>;
        // The base owns the method, which owns its handler.
        AddMethod(new grpc::internal::RpcServiceMethod(kMethod, RpcMethod::NORMAL_RPC,
                                                       new Handler(exchange, this)));
    }

private:
    static Status exchange(Service*, grpc::ServerContext*, const ByteBuffer* request, ByteBuffer* reply)
    {
        const Slice bytes = bytesOf(*request);
        uint8_t response[kMessageSize];
        const Slice answered(response, answer(bytes.begin(), bytes.size(), response));
        *reply = ByteBuffer(&answered, 1);
        return Status::OK;
    }
};

class Grpc : public Way {
public:
    void serve() override
    {
        Service service;
        grpc::ServerBuilder builder;
        builder.AddListeningPort(kAddress, grpc::InsecureServerCredentials());
        builder.RegisterService(&service);
        const std::unique_ptr<grpc::Server> server = builder.BuildAndStart();
        require(server != nullptr, "BuildAndStart", "no server");
        server->Wait();
    }

    void connect() override
    {
        m_channel = grpc::CreateChannel(kAddress, grpc::InsecureChannelCredentials());
        m_method = std::make_unique<RpcMethod>(kMethod, RpcMethod::NORMAL_RPC, m_channel);
    }

    void ask(const Message& request) override
    {
        grpc::ClientContext context;
        context.set_wait_for_ready(true);
        context.set_deadline(std::chrono::system_clock::now() + std::chrono::milliseconds(kAnswerTimeout));
        const Slice bytes(request.data(), request.size(), Slice::STATIC_SLICE);
        const ByteBuffer asked(&bytes, 1);
        ByteBuffer reply;
        check(grpc::internal::BlockingUnaryCall(m_channel.get(), *m_method, &context, asked, &reply),
              "BlockingUnaryCall");
        require(bytesOf(reply).size() == request.size(), "BlockingUnaryCall", "another length");
    }

private:
    std::shared_ptr<grpc::Channel> m_channel;
    std::unique_ptr<RpcMethod> m_method;
};

} // namespace

std::unique_ptr<Way> makeGrpc()
{
    return std::make_unique<Grpc>();
}

} // namespace bench

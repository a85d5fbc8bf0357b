// A plugin for qemu's user mode: when the program ends, prints on standard error how many
// instructions it executed. Debian's qemu ships no header for plugins, hence the declarations.
#include <cstdint>
#include <cstdio>

static std::uint64_t g_u_count;

extern "C" {
struct sBlock; // a straight-line sequence of instructions
std::size_t qemu_plugin_tb_n_insns(const sBlock*);
void qemu_plugin_register_vcpu_tb_trans_cb(std::uint64_t, void (*)(std::uint64_t, sBlock*));
void qemu_plugin_register_vcpu_tb_exec_inline(sBlock*, int, std::uint64_t*, std::uint64_t);
void qemu_plugin_register_atexit_cb(std::uint64_t, void (*)(std::uint64_t, void*), void*);
int qemu_plugin_version = 1;

int qemu_plugin_install(std::uint64_t a_u_plugin)
{
    constexpr int ADD = 0;
    qemu_plugin_register_vcpu_tb_trans_cb(a_u_plugin, [](std::uint64_t, sBlock* a_p_block) {
        const std::size_t l_u_size = qemu_plugin_tb_n_insns(a_p_block);
        qemu_plugin_register_vcpu_tb_exec_inline(a_p_block, ADD, &g_u_count, l_u_size);
    });
    const auto Print = [](std::uint64_t, void*) { std::fprintf(stderr, "%ju\n", g_u_count); };
    qemu_plugin_register_atexit_cb(a_u_plugin, Print, nullptr);
    return 0;
}
}

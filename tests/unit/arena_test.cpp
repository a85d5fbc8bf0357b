#include <arena.h>

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <sys/mman.h>

TEST(Arena, HandsOutDistinctPiecesUntilItIsFull)
{
    std::mt19937 l_c_random(26);
    cArena l_c_arena;
    for (const std::size_t l_u_block : {0U, 1U, 1U << 16U, 1U << 20U}) {
        EXPECT_TRUE(l_c_arena.Allocate(0) == nullptr && !l_c_arena.Holds(nullptr)) << "no block";
        l_c_arena.Reserve(l_u_block);
        std::size_t l_u_total = 0;
        std::size_t l_u_size = 0; // of the first piece
        std::vector<std::pair<char*, std::size_t>> l_v_pieces;
        while (auto* l_p_piece = static_cast<char*>(l_c_arena.Allocate(l_u_size))) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(l_p_piece) % alignof(std::max_align_t), 0U);
            EXPECT_TRUE(l_c_arena.Holds(l_p_piece) && l_c_arena.Holds(l_p_piece + l_u_size));
            std::fill_n(l_p_piece, l_u_size, static_cast<char>(l_v_pieces.size()));
            l_v_pieces.emplace_back(l_p_piece, l_u_size);
            l_u_total += l_u_size;
            l_u_size = l_c_random() % (2048U >> l_c_random() % 12); // most are small
        }
        EXPECT_GE(l_u_total, l_u_block / 2);
        while (l_c_arena.Allocate(1) != nullptr) {
        }
        EXPECT_EQ(l_c_arena.Allocate(0), nullptr) << "full";
        for (std::size_t l_u_piece = 0; l_u_piece < l_v_pieces.size(); ++l_u_piece) {
            const auto [l_p_piece, l_u_length] = l_v_pieces[l_u_piece];
            const std::string l_s_filled(l_u_length, static_cast<char>(l_u_piece));
            EXPECT_EQ(std::string(l_p_piece, l_u_length), l_s_filled) << l_u_piece;
            EXPECT_TRUE(l_u_piece == 0 || l_p_piece > l_v_pieces[l_u_piece - 1].first);
        }
        l_c_arena.Release();
    }
}

TEST(Arena, ReturnsWhatItHasNotHandedOut)
{
    cArena l_c_arena;
    l_c_arena.Trim(0);
    l_c_arena.Reserve(1U << 20U);
    auto* const l_p_piece = static_cast<char*>(l_c_arena.Allocate(1000));
    char* const l_p_unused = l_p_piece + (1U << 19U); // at the beginning of a page
    unsigned char l_u_resident = 0;
    for (const std::size_t l_u_least : {1U << 21U, 1U << 18U}) {
        l_c_arena.Trim(l_u_least);
        const bool l_b_kept = l_u_least > 1U << 20U;
        EXPECT_EQ(mincore(l_p_unused, 1, &l_u_resident) == 0, l_b_kept);
        EXPECT_TRUE(l_c_arena.Holds(l_p_unused) == l_b_kept && l_c_arena.Holds(l_p_piece + 999));
    }
    EXPECT_EQ(l_c_arena.Allocate(1U << 18U), nullptr);
    l_c_arena.Release();
}

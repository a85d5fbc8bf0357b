#include <cgilib.h>
#include <xpath_processor.h>

#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

#include <extraction.h>
#include <response.h>

// The allocations of the whole program, of which one can be made to fail.
static long g_i_left = -1; // until that one; below 0 none fails

static void* Allocate(std::size_t a_u_size)
{
    return g_i_left >= 0 && g_i_left-- == 0 ? nullptr : std::malloc(a_u_size);
}
// None is inlined, or GCC would take what they do for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t a_u_size)
{
    void* l_p_block = Allocate(a_u_size);
    return l_p_block != nullptr ? l_p_block : throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t a_u_size, const std::nothrow_t&) noexcept
{
    return Allocate(a_u_size);
}
[[gnu::noinline]] void operator delete(void* a_p_block) noexcept
{
    std::free(a_p_block);
}
[[gnu::noinline]] void operator delete(void* a_p_block, std::size_t) noexcept
{
    std::free(a_p_block);
}

static std::string Answer(const TiXmlDocument& a_c_document)
{
    TinyXPath::xpath_processor::forget_tree();
    cCGI l_c_request(cCGI::eXHTML_1_0_TRANSITIONAL);
    l_c_request.ParseData();
    return ComposeResponse(ExtractValues(a_c_document, l_c_request.GetData()));
}

TEST(Memory, FailsOrGivesTheRightAnswer)
{
    TiXmlDocument l_c_document;
    ASSERT_TRUE(l_c_document.LoadFile(EXAMPLE_CONFIG));
    setenv("REQUEST_METHOD", "GET", 1);
    setenv("QUERY_STRING", "element=dns&union=//@*|//text()&text=//processing-instruction()|//location/text()", 1);
    const std::string l_s_right = Answer(l_c_document);

    int l_i_failed = 0;
    bool l_b_reached = true;
    for (long l_i_allocation = 0; l_b_reached; ++l_i_allocation) {
        std::string l_s_answer = l_s_right;
        g_i_left = l_i_allocation;
        try {
            l_s_answer = Answer(l_c_document);
        } catch (const std::bad_alloc&) {
            ++l_i_failed;
        }
        l_b_reached = g_i_left < 0;
        g_i_left = -1;
        EXPECT_EQ(l_s_answer, l_s_right) << "without allocation " << l_i_allocation;
    }
    EXPECT_GT(l_i_failed, 50);
}

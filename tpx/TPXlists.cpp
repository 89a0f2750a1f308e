#include "tpx/TPXlists.h"

namespace vellum {

void TPXlistStore::discard(GLuint first, GLsizei count) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_lists.emplace_back(first, count);
}

void TPXlistStore::discardTexture(GLuint texture) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_textures.push_back(texture);
}

void TPXlistStore::collect() {
    std::vector<std::pair<GLuint, GLsizei>> lists;
    std::vector<GLuint> textures;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        lists.swap(m_lists);
        textures.swap(m_textures);
    }
    for (const auto& [first, count] : lists)
        glDeleteLists(first, count);
    if (!textures.empty())
        glDeleteTextures(static_cast<GLsizei>(textures.size()), textures.data());
}

std::size_t TPXlistStore::pending() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_lists.size() + m_textures.size();
}

}  // namespace vellum

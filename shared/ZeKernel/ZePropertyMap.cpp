#include "ZePropertyMap.h"

#include <boost/lexical_cast.hpp>

template <ZePropertyValue T> std::wstring ZeProperty::content_impl<T>::to_string() const
{
    return boost::lexical_cast<std::wstring>(value);
}

template class ZeProperty::content_impl<int>;
template class ZeProperty::content_impl<unsigned int>;
template class ZeProperty::content_impl<long long>;
template class ZeProperty::content_impl<double>;
